#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

#include <optional>

namespace nimbrelle {

struct Application;

/// One item in all its representations: the bytes by the name of the format.
using ClipboardItem = QMap<QString, QByteArray>;
using ClipboardSnapshot = QList<ClipboardItem>;

/// In the desktop's own milliseconds, which wrap.
struct WriteTimes {
    quint32 causedAt = 0; ///< when the user did what led to it, as the writer tells; 0: not known
    quint32 doneAt = 0; ///< long after that, its writer hung
};

/// The clipboard of the session. A read waits without blocking, and never longer than 0.3 seconds in all; the
/// main thread's event loop must run meanwhile. It takes no more than what a reader's clipboard ever holds.
class Clipboard : public QObject {
    Q_OBJECT

public:
    /// Every representation of every item, byte for byte; empty when the clipboard is. Absent when its owner
    /// did not give everything in time, or names more than 64 formats or holds more than 64 MB: then it could
    /// not be put back whole, and must be left alone.
    virtual QCoro::Task<std::optional<ClipboardSnapshot>> snapshot() = 0;

    /// Grows with each write by anyone, ours included.
    virtual quint64 changeCount() const = 0;

    /// Whether the last write was this program's.
    virtual bool isWrittenBy(const Application &application) const = 0;

    /// Whether what it holds was put there by restore().
    virtual bool isOwn() const = 0;

    /// Of the last write.
    virtual WriteTimes writeTimes() const = 0;

    /// The plain text. Absent when there is none, not in time, or more than 1 MB.
    virtual QCoro::Task<std::optional<QString>> string() = 0;

    /// Clears the clipboard and puts the items back under their formats. At once.
    virtual void restore(const ClipboardSnapshot &snapshot) = 0;

signals:
    void changed(); ///< with each write
};

/// What the session offers as the last marked text, without any copying. A session may have none: then the
/// count stays 0 and the text absent.
class PrimarySelection {
public:
    virtual ~PrimarySelection() = default;

    /// Grows each time a program claims the selection, also a second time. A text is that of the gesture at
    /// hand only if this differs from what it was when the mouse went down: else it is an older one.
    virtual quint64 changeCount() const = 0;

    /// Absent when there is none, its owner did not answer within 0.3 seconds, or it is more than 1 MB.
    virtual QCoro::Task<std::optional<QString>> text() = 0;
};

} // namespace nimbrelle
