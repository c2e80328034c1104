#include "practice/ChatRequest.h"

#include "practice/Json.h"

#include <algorithm>
#include <ranges>

namespace nimbrelle::practice {

std::optional<ChatRequest> readChatRequest(std::string_view json)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseIterativeFlag>(
        json.data(), json.size());
    if (document.HasParseError())
        return std::nullopt;
    ChatRequest request;
    for (const Value &message : listAt(document, "messages")) {
        if (textAt(message, "role").empty())
            return std::nullopt;
        request.messages.push_back({.role = std::string(textAt(message, "role")),
            .content = std::string(textAt(message, "content"))});
    }
    if (request.messages.empty())
        return std::nullopt;
    request.stream = isTrueAt(document, "stream");
    const Value *format = memberAt(document, "response_format");
    request.wantsJson = format && textAt(*format, "type") == "json_object";
    return request;
}

template <typename Messages> static std::string_view firstOf(Messages &&messages, std::string_view role)
{
    const auto found = std::ranges::find(messages, role, &ChatMessage::role);
    return found == std::ranges::end(messages) ? std::string_view() : found->content;
}

std::string_view ChatRequest::systemText() const
{
    return firstOf(messages, "system");
}

std::string_view ChatRequest::opening() const
{
    return firstOf(messages, "user");
}

std::string_view ChatRequest::question() const
{
    return firstOf(std::views::reverse(messages), "user");
}

} // namespace nimbrelle::practice
