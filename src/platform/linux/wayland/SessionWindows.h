#pragma once

#include "platform/FrontApplication.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QObject>
#include <QRect>

namespace nimbrelle {

/// A window that the compositor shows.
struct SessionWindow {
    Application application;
    QRect area; ///< of its content, in pixels of the X server's root window; null where it is not told
    bool isActive = false;
    bool isOwn = false;

    bool operator==(const SessionWindow &) const = default;
};

/// What a Wayland session tells of the windows of all programs, which it does in as many ways as there are
/// compositors.
class SessionWindows : public QObject {
    Q_OBJECT

public:
    /// Whether the session has a way to tell, which may not have been heard of yet.
    virtual bool isOffered() const = 0;

    /// Whether it is known at all which program is in front. While it is not, a program that must not be read
    /// can't be told from any other.
    virtual bool isTold() const = 0;

    /// As they were when last told, from the lowest to the topmost.
    virtual const QList<SessionWindow> &all() const = 0;

    /// Asks anew. Returns when all() is as of now, or soon in any case.
    virtual QCoro::Task<> refresh() = 0;

    virtual void activate(const Application &application) = 0;

signals:
    /// Another window has become the active one, or the last of all has lost it.
    void activeChanged();
};

} // namespace nimbrelle
