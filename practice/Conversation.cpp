#include "practice/Conversation.h"

#include "practice/AskTalk.h"
#include "practice/CoachTalk.h"
#include "practice/Gloss.h"

#include <charconv>

namespace nimbrelle::practice {

std::optional<size_t> lengthLimitOf(std::string_view question)
{
    constexpr std::string_view mark = "不超过";
    const size_t found = question.find(mark);
    if (found == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = trimmed(question.substr(found + mark.size()));
    size_t limit = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), limit);
    return error == std::errc() ? std::optional(limit) : std::nullopt;
}

static std::string shortAnswer(const Lexicon &lexicon, std::string_view question, size_t limit)
{
    const std::vector<KeyTerm> terms = keyTermsOf(lexicon, question, 1);
    const std::string answer = terms.empty()
        ? "练习词库里没有这个词"
        : terms.front().text + "：" + terms.front().meaningZh + "（练习，非 AI）";
    return firstCodePoints(answer, limit);
}

std::string converse(const Lexicon &lexicon, const ChatRequest &request)
{
    if (request.systemText().find("英语教练") != std::string_view::npos)
        return coachTalk(lexicon, request) + "\n\n" + std::string(whatAnswersZh);
    if (const auto limit = lengthLimitOf(request.question()))
        return shortAnswer(lexicon, request.question(), *limit);
    return askTalk(lexicon, request) + "\n\n" + std::string(whatAnswersZh);
}

} // namespace nimbrelle::practice
