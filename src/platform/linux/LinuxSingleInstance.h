#pragma once

#include "platform/SingleInstance.h"
#include "platform/linux/commands/CommandCaller.h"

#include <QLocalServer>

namespace nimbrelle {

/// A lock on a file in the data directory, which the kernel lets go when its process ends in whatever way,
/// and a socket to be told by: in the user's runtime directory, or where that won't do in another one. The
/// file names the socket, so that a process with another environment finds it. Neither needs a session bus.
class LinuxSingleInstance final : public SingleInstance {
    Q_OBJECT

public:
    /// Of the system, but in tests.
    struct Surroundings {
        QString runtimeDirectory;
        CommandPatience patience;

        static Surroundings ofSystem();
    };

    explicit LinuxSingleInstance(
        const QString &dataDirectory, Surroundings surroundings = Surroundings::ofSystem());
    ~LinuxSingleInstance() override;

    Claim claim(CommandRunner run) override;
    std::optional<int> claimOrGive(const GivenCommand &command, QTextStream &out) override;
    int giveToProgram(const GivenCommand &command, const ProgramStart &start, QTextStream &out) override;

private:
    bool takeLock();
    void releaseLock();
    bool listen();
    void meet(QLocalSocket *caller);
    void announce(const QString &socketPath) const;
    QString announcedSocket() const;
    std::optional<int> give(const GivenCommand &command, QTextStream &out) const;

    const CommandPatience m_patience;
    const QString m_lockPath;
    const QStringList m_socketPaths; ///< the first that can be had is taken
    int m_lock = -1;
    bool m_isHeld = false;
    CommandRunner m_run;
    QLocalServer m_server;
};

} // namespace nimbrelle
