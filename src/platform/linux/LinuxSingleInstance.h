#pragma once

#include "platform/SingleInstance.h"

#include <QLocalServer>

namespace nimbrelle {

/// A lock on a file in the data directory, which the kernel lets go when its process ends in whatever way,
/// and a socket to be told by: in the user's runtime directory, or where that won't do in another one.
/// Neither needs a session bus.
class LinuxSingleInstance final : public SingleInstance {
    Q_OBJECT

public:
    LinuxSingleInstance(const QString &dataDirectory, const QString &runtimeDirectory);
    /// With the session's own runtime directory.
    explicit LinuxSingleInstance(const QString &dataDirectory);
    ~LinuxSingleInstance() override;

    bool claim() override;

private:
    bool takeLock();
    bool listen();
    bool notifyRunningInstance() const;

    const QString m_lockPath;
    const QStringList m_socketPaths; ///< the first that can be had is taken
    int m_lock = -1;
    QLocalServer m_server;
};

} // namespace nimbrelle
