#pragma once

#include "frame/WordPattern.h"
#include "notebook/WordEntry.h"

/// What the status item and its menu show of a word, as text. Lengths count characters.
namespace nimbrelle::MenuBarText {

/// The line width of the sentence in the menu.
inline constexpr qsizetype sentenceWrapWidth = 46;

/// A headword beside the icon; beyond 16 characters its first 15 and an ellipsis.
QString title(const QString &headword);

/// The latest sentence that the learner met, else the latest that there is.
std::optional<QString> sentence(const WordEntry &entry);

/// Filled line by line up to `width` (at least 1), broken at blanks; a longer piece without blanks is cut.
QString wrap(const QString &text, qsizetype width);

/// Where the word or one of its forms stands in `text`, a wrapped sentence: the longest form that occurs,
/// else what begins with the headword's stem.
std::optional<TextRange> highlightRange(const WordEntry &entry, const QString &text);

struct SentenceTitle {
    QString text; ///< wrapped
    std::optional<TextRange> bold; ///< bold and in the primary label colour; the rest is secondary

    bool operator==(const SentenceTitle &) const = default;
};
/// Absent for a word without sentences.
std::optional<SentenceTitle> sentenceTitle(const WordEntry &entry);

} // namespace nimbrelle::MenuBarText
