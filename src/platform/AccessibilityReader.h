#pragma once

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

/// Asks the program in front for what it tells screen readers. Every question blocks, but never longer than
/// 0.3 seconds; after one that got no answer in time, the same program gets no further question until the
/// next beginGesture(), and each answer is absent at once. Absent also means: no such thing, or no
/// accessibility.
class AccessibilityReader {
public:
    virtual ~AccessibilityReader() = default;

    /// Forgets who was too slow. Called once at the start of each gesture of the user.
    virtual void beginGesture() = 0;

    /// The element with the keyboard focus, or else with the newest selection, in the program in front.
    virtual std::optional<AccessibleElement> focusedElement() = 0;

    /// As the program gave it, untrimmed; empty when nothing is selected. U+FFFC stands for an embedded
    /// picture or element whose text is not in it.
    virtual std::optional<QString> selectedText(const AccessibleElement &element) = 0;

    /// The element's text round its selection: at least `reach` UTF-16 units to each side, as far as the
    /// element has so many; it may be more. No half of a surrogate pair at its ends.
    virtual std::optional<TextPiece> textRoundSelection(
        const AccessibleElement &element, qsizetype reach) = 0;

    /// Whether the element is a web page's root, whose address is the page's.
    virtual std::optional<bool> isWebArea(const AccessibleElement &element) = 0;
    virtual std::optional<AccessibleElement> parent(const AccessibleElement &element) = 0;
    /// The address that the element itself tells, as it tells it.
    virtual std::optional<QString> address(const AccessibleElement &element) = 0;
};

} // namespace nimbrelle
