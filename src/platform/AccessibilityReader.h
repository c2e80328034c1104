#pragma once

#include <QCoro/QCoroTask>
#include <QString>

#include <optional>

namespace nimbrelle {

/// Stands for one element of a program's accessibility tree; only the reader that gave it can read it.
struct AccessibleElement {
    QString program;
    QString object;

    bool operator==(const AccessibleElement &) const = default;
};

/// A piece of an element's text with the selection in it, in UTF-16 units of the piece.
struct TextPiece {
    QString text;
    qsizetype location = 0;
    qsizetype length = 0;

    bool operator==(const TextPiece &) const = default;
};

/// What is marked in an element. U+FFFC stands for an embedded picture or element whose text is not in it.
struct MarkedText {
    QString text; ///< as the program gave it, untrimmed; empty when nothing is marked
    /// The text with what is round it: at least as far to each side as was asked for, where there is so much;
    /// it may be more. No half of a surrogate pair at its ends.
    std::optional<TextPiece> piece;
    /// The change count when the program last told of a change of its selection; 0 when it never did.
    quint64 change = 0;
};

/// Asks the program in front for what it tells screen readers. No question holds the main thread. All those
/// of one gesture together are waited for no longer than 0.3 seconds; the pauses between them do not count.
/// After that each answer is absent at once, and one that comes late reaches nobody. Absent also means: no
/// such thing, or no accessibility. Main thread only. Questions that are open when the reader dies are never
/// answered.
class AccessibilityReader {
public:
    virtual ~AccessibilityReader() = default;

    /// Gives the questions from now on their 0.3 seconds. Called once at the start of each gesture of the
    /// user. What an earlier gesture still waits for keeps the time that it had.
    virtual void beginGesture() = 0;

    /// Grows at least with each change of a selection that a program tells of. Some tell of none.
    virtual quint64 changeCount() const = 0;

    /// The element with the keyboard focus, or else with the newest selection, in the program that is in
    /// front now.
    virtual QCoro::Task<std::optional<AccessibleElement>> focusedElement() = 0;

    /// `reach` is in UTF-16 units. Where nothing is marked in the element, that of the one where the program
    /// last told of a selection.
    virtual QCoro::Task<std::optional<MarkedText>> markedText(AccessibleElement element, qsizetype reach) = 0;

    /// Whether the element is a web page's root, whose address is the page's.
    virtual QCoro::Task<std::optional<bool>> isWebArea(AccessibleElement element) = 0;
    virtual QCoro::Task<std::optional<AccessibleElement>> parent(AccessibleElement element) = 0;
    /// The address that the element itself tells, as it tells it.
    virtual QCoro::Task<std::optional<QString>> address(AccessibleElement element) = 0;
};

} // namespace nimbrelle
