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
/// gives the text round it, or else through the clipboards. Its failures are silent: what cannot be read is
/// absent. Main thread only; it must outlive its reads.
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

    /// The left button went down: a primary selection claimed from now on is that of this gesture.
    void noteMouseDown();

    /// All ways, in their order. A stop takes effect until the clipboard is touched; from there on the read
    /// goes through, so that the clipboard is restored.
    QCoro::Task<std::optional<Result>> read(std::stop_token stop);

    QCoro::Task<std::optional<Result>> readViaAccessibility(std::stop_token stop);

    /// The primary selection if it was claimed since the count was `atMouseDown`, else a simulated copy with
    /// the clipboard restored afterwards. The copy is left out in a terminal and while a modifier is held.
    QCoro::Task<std::optional<QString>> readViaClipboard(quint64 atMouseDown, std::stop_token stop);

    /// 300 UTF-16 units to each side of the selection, without halves of surrogate pairs at the ends. Absent
    /// when that holds nothing.
    static std::optional<QString> contextOf(const TextPiece &piece);

signals:
    void copyEnded();

private:
    QCoro::Task<std::optional<QString>> readPrimary(quint64 atMouseDown);
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

    quint64 m_primaryAtMouseDown = 0;
    bool m_copying = false;
};

} // namespace nimbrelle
