#include "practice/ChatRequest.h"

#include <algorithm>
#include <ranges>
#include <rapidjson/document.h>

namespace nimbrelle::practice {

using Value = rapidjson::Value;

static std::string_view textOf(const Value &object, const char *name)
{
    const auto found = object.FindMember(name);
    if (found == object.MemberEnd() || !found->value.IsString())
        return {};
    return {found->value.GetString(), found->value.GetStringLength()};
}

static std::optional<std::vector<ChatMessage>> readMessages(const Value &request)
{
    const auto found = request.FindMember("messages");
    if (found == request.MemberEnd() || !found->value.IsArray() || found->value.Empty())
        return std::nullopt;
    std::vector<ChatMessage> messages;
    for (const Value &message : found->value.GetArray()) {
        if (!message.IsObject() || textOf(message, "role").empty())
            return std::nullopt;
        messages.push_back({std::string(textOf(message, "role")), std::string(textOf(message, "content"))});
    }
    return messages;
}

std::optional<ChatRequest> readChatRequest(std::string_view json)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseIterativeFlag>(
        json.data(), json.size());
    if (document.HasParseError() || !document.IsObject())
        return std::nullopt;
    auto messages = readMessages(document);
    if (!messages)
        return std::nullopt;
    ChatRequest request{std::move(*messages), false, false};
    const auto stream = document.FindMember("stream");
    request.stream = stream != document.MemberEnd() && stream->value.IsTrue();
    const auto format = document.FindMember("response_format");
    request.wantsJson = format != document.MemberEnd() && format->value.IsObject()
        && textOf(format->value, "type") == "json_object";
    return request;
}

std::string_view ChatRequest::systemText() const
{
    const auto found = std::ranges::find(messages, "system", &ChatMessage::role);
    return found == messages.end() ? std::string_view() : found->content;
}

std::string_view ChatRequest::question() const
{
    const auto fromBehind = std::views::reverse(messages);
    const auto found = std::ranges::find(fromBehind, "user", &ChatMessage::role);
    return found == fromBehind.end() ? std::string_view() : found->content;
}

} // namespace nimbrelle::practice
