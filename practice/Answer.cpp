#include "practice/Answer.h"

#include "practice/Conversation.h"
#include "practice/Explain.h"
#include "practice/Lookup.h"
#include "practice/Mnemonic.h"
#include "practice/Translation.h"

#include <array>

namespace nimbrelle::practice {

namespace {

/// `text` behind a label such as "Query: ", whatever it says; all of it where there is none.
std::string_view behindLabel(std::string_view text)
{
    const auto isOfLabel = [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; };
    size_t end = 0;
    while (end < text.size() && (isOfLabel(text[end]) || text[end] == ' '))
        ++end;
    return end > 0 && text.substr(end).starts_with(": ") ? text.substr(end + 2) : text;
}

/// The message is two labelled texts, and the first may have line breaks too.
JsonObject explainMessage(const Lexicon &lexicon, std::string_view message)
{
    const std::string_view selection = behindLabel(message);
    for (size_t at = 0; (at = selection.find('\n', at)) != std::string_view::npos;) {
        const std::string_view rest = selection.substr(++at);
        const std::string_view context = behindLabel(rest);
        if (context.size() < rest.size())
            return explain(lexicon, selection.substr(0, at - 1), context);
    }
    return explain(lexicon, selection, {});
}

JsonObject lookUpMessage(const Lexicon &lexicon, std::string_view message)
{
    return lookUp(lexicon, behindLabel(message));
}

struct Contract {
    std::string_view telling; ///< a member that only its system text speaks of
    JsonObject (*answer)(const Lexicon &lexicon, std::string_view message);
};

constexpr std::array contracts = {
    Contract{.telling = "\"surface_form\"", .answer = explainMessage},
    Contract{.telling = "\"about_zh\"", .answer = lookUpMessage},
    Contract{.telling = "\"translation_zh\"", .answer = translate},
    Contract{.telling = "\"tip_zh\"", .answer = mnemonic},
};

} // namespace

std::optional<std::string> answerTo(const Lexicon &lexicon, const ChatRequest &request)
{
    if (request.stream || !request.wantsJson)
        return converse(lexicon, request);
    for (const Contract &contract : contracts) {
        if (request.systemText().find(contract.telling) != std::string_view::npos)
            return contract.answer(lexicon, request.question()).text();
    }
    return std::nullopt;
}

} // namespace nimbrelle::practice
