#pragma once

#include "platform/AccessibilityReader.h"
#include "platform/Clipboard.h"

#include <QCoro/QCoroTask>
#include <QObject>

#include <stop_token>

namespace nimbrelle {

class Clock;
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

    SelectionReader(Clock &clock, AccessibilityReader &accessibility, PrimarySelection &primary,
        Clipboard &clipboard, KeySender &keys, const Pointer &pointer, const FrontApplication &front);

    /// The left button went down for the first time: what changes from now on is marked by this gesture, also
    /// by its second and third click.
    void noteMouseDown();

    /// All ways, in their order. A stop takes effect until the clipboard is touched; from there on the read
    /// goes through, so that the clipboard is restored.
    QCoro::Task<std::optional<Result>> read(std::stop_token stop);

    /// 300 UTF-16 units to each side of the selection, without halves of surrogate pairs at the ends. Absent
    /// when that holds nothing.
    static std::optional<QString> contextOf(const TextPiece &piece);

signals:
    void copyEnded();

private:
    /// How far the changes had been counted when the button went down.
    struct Counts {
        quint64 accessibility = 0;
        quint64 primary = 0;
    };

    QCoro::Task<std::optional<MarkedText>> readAccessible();
    /// Absent when it was not claimed since the press: then it may be another window's.
    QCoro::Task<std::optional<QString>> readPrimary(Counts atMouseDown);
    bool isOld(const MarkedText &marked, Counts atMouseDown) const;
    /// Not in a terminal and not while a modifier is held. The clipboard is restored afterwards.
    QCoro::Task<std::optional<QString>> readByCopy(std::stop_token stop);
    QCoro::Task<std::optional<QString>> copyOver(ClipboardSnapshot before);
    QCoro::Task<bool> clipboardChangesFrom(quint64 count);
    bool mayCopy() const;

    Clock &m_clock;
    AccessibilityReader &m_accessibility;
    PrimarySelection &m_primary;
    Clipboard &m_clipboard;
    KeySender &m_keys;
    const Pointer &m_pointer;
    const FrontApplication &m_front;

    Counts m_atMouseDown;
    bool m_copying = false;
};

} // namespace nimbrelle
