#pragma once

#include "practice/ChatRequest.h"
#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The answer to a free question: the coach's, or about a text, or about words. It says what answers here.
std::string converse(const Lexicon &lexicon, const ChatRequest &request);

/// "… 不超过 20 字 …" gives 20; absent when the question sets no limit.
std::optional<size_t> lengthLimitOf(std::string_view question);

inline constexpr std::string_view whatAnswersZh =
    "（回答你的是内置的练习服务，不是 AI，只讲得了词库里的内容。在设置里填上自己的 API "
    "key，就能换成真正的回答。）";

} // namespace nimbrelle::practice
