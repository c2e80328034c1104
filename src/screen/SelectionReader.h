#pragma once

#include "frame/Timestamp.h"
#include "platform/AccessibilityReader.h"
#include "platform/Clipboard.h"
#include "screen/CopyRules.h"
#include "screen/LateCopyUndo.h"

#include <QCoro/QCoroTask>
#include <QObject>

#include <stop_token>

namespace nimbrelle {

class Clock;
class ConfigStore;
class FrontApplication;
class KeySender;
class Pointer;

/// Fetches the text that the user has just marked in the program in front: through accessibility, which also
/// gives the text round it, or else through the clipboards. What was marked before the press is not what the
/// gesture marked. Its failures are silent: what cannot be read is absent. Main thread only; it must outlive
/// its reads.
class SelectionReader : public QObject {
    Q_OBJECT

public:
    struct Result {
        QString text; ///< as the program gave it, untrimmed; never blank
        std::optional<QString> context; ///< the text round it

        bool operator==(const Result &) const = default;
    };

    SelectionReader(Clock &clock, const ConfigStore &config, AccessibilityReader &accessibility,
        PrimarySelection &primary, Clipboard &clipboard, KeySender &keys, const Pointer &pointer,
        const FrontApplication &front, const WindowAtPointer &window);

    /// The left button went down for the first time: what changes from now on is marked by this gesture, also
    /// by its second and third click.
    void noteMouseDown();
    /// It came up, and may have marked text.
    void noteMouseUp();
    void noteKeyDown();
    /// Text was marked, as the primary selection tells, where nobody hears of presses: that is what this
    /// gesture marked, and accessibility gives no more than what is round it.
    void noteMarked();

    /// All ways, in their order. A stop takes effect until the clipboard is touched; from there on the read
    /// goes through, so that the clipboard is restored.
    QCoro::Task<std::optional<Result>> read(std::stop_token stop);

    /// What is marked at this moment, whenever that was done: by the primary selection, else through
    /// accessibility. Leaves the clipboard alone.
    QCoro::Task<std::optional<Result>> readCurrent(std::stop_token stop);

    /// 300 UTF-16 units to each side of the selection, without halves of surrogate pairs at the ends. Absent
    /// when that holds nothing.
    static std::optional<QString> contextOf(const TextPiece &piece);

signals:
    void copyEnded();

private:
    /// What was noted of the gesture that a read is for.
    struct Marking {
        quint64 accessibilityAtMouseDown = 0; ///< how far the changes had been counted
        quint64 primaryAtMouseDown = 0;
        PointedWindow press;
        PointedWindow release;
        QRectF areaAtRelease; ///< of the window of the press
        Timestamp askedAt; ///< when the read began
        bool isOfPrimary = false; ///< see noteMarked()
    };

    QCoro::Task<std::optional<MarkedText>> readAccessible();
    /// Absent when it was not claimed since the press: then it may be another window's.
    QCoro::Task<std::optional<QString>> readPrimary(quint64 atMouseDown);
    bool isOld(const MarkedText &marked, const Marking &marking) const;
    /// The clipboard is restored afterwards.
    QCoro::Task<std::optional<QString>> readByCopy(Marking marking, std::stop_token stop);
    QCoro::Task<std::optional<QString>> copyOver(Application program, ClipboardSnapshot before);
    QCoro::Task<bool> clipboardChangesFrom(quint64 count);
    /// The program that would get the shortcut; absent where it must not be sent.
    std::optional<Application> mayCopyFrom(const Marking &marking, std::chrono::milliseconds waited) const;

    Clock &m_clock;
    const ConfigStore &m_config;
    AccessibilityReader &m_accessibility;
    PrimarySelection &m_primary;
    Clipboard &m_clipboard;
    KeySender &m_keys;
    const Pointer &m_pointer;
    const FrontApplication &m_front;
    const WindowAtPointer &m_window;

    Marking m_marking;
    LateCopyUndo m_lateCopy;
    bool m_copying = false;
};

} // namespace nimbrelle
