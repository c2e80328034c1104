#pragma once

#include <QObject>

namespace nimbrelle {

/// Whether the session is locked or its screen saver is on, as far as the desktop tells.
class SessionLock : public QObject {
    Q_OBJECT

public:
    virtual bool isLocked() const = 0;

signals:
    void changed();
};

} // namespace nimbrelle
