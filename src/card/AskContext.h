#pragma once

#include "notebook/Explanation.h"
#include "notebook/PageSource.h"

#include <array>

namespace nimbrelle {

/// What a conversation is about.
struct AskContext {
    QString original; ///< the English text
    std::optional<QString> translation; ///< its Chinese one
    std::optional<QString> focusWord; ///< the word in question, when it comes from a word card
    std::optional<Explanation> explanation; ///< what that card said
    std::optional<PageSource> source; ///< where the text was met

    /// What introduces the text to the AI.
    QString contextText() const;

    bool operator==(const AskContext &) const = default;
};

/// The ready-made questions, in the order of their buttons.
enum class QuickQuestion { why, structure, simpler, examples };
inline constexpr std::array allQuickQuestions{
    QuickQuestion::why, QuickQuestion::structure, QuickQuestion::simpler, QuickQuestion::examples};

/// The short text of the button, which is also shown in the conversation.
QString label(QuickQuestion question);

/// The full question that the AI gets.
QString prompt(QuickQuestion question, const AskContext &context);

} // namespace nimbrelle
