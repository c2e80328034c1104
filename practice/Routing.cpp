#include "practice/Routing.h"

#include "practice/Answer.h"

#include <algorithm>
#include <cctype>
#include <chrono>

namespace nimbrelle::practice {

namespace {

Reply errorReply(unsigned status, std::string_view type, std::string_view code, std::string_view message)
{
    JsonObject error, envelope;
    error.set("message", message).set("type", type).set("param", Value()).set("code", code);
    Reply reply;
    reply.status = status;
    reply.parts = {envelope.set("error", error).text()};
    return reply;
}

std::string keyOf(const Request &request)
{
    const std::string_view scheme = "bearer ";
    const auto isSame = [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); };
    const std::string_view value = request.authorization;
    if (!std::ranges::equal(scheme, value.substr(0, scheme.size()), isSame))
        return {};
    return std::string(trimmed(value.substr(scheme.size())));
}

/// A completion or an event of a stream, with what its one choice says.
std::string choiceJson(
    std::string_view kind, std::string_view member, const JsonObject &said, const Value &finishReason)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    std::vector<JsonObject> choices(1);
    choices.front().set("index", Value(0)).set(member, said).set("finish_reason", finishReason);
    JsonObject json;
    json.set("id", "practice").set("object", kind).set("model", "nimbrelle-practice");
    json.set("created", Value(int64_t{std::chrono::duration_cast<std::chrono::seconds>(now).count()}));
    return json.set("choices", choices).text();
}

std::string completionJson(std::string_view content)
{
    JsonObject message;
    message.set("role", "assistant").set("content", content);
    return choiceJson("chat.completion", "message", message, Value("stop"));
}

std::string chunkEvent(const JsonObject &delta, const Value &finishReason = Value())
{
    return "data: " + choiceJson("chat.completion.chunk", "delta", delta, finishReason) + "\n\n";
}

std::vector<std::string> streamEvents(std::string_view content, Failure failure)
{
    JsonObject delta;
    std::vector<std::string> events = {chunkEvent(delta.set("role", "assistant"))};
    for (const std::string &piece : piecesOf(content)) {
        JsonObject grown;
        events.push_back(chunkEvent(grown.set("content", piece)));
        if (failure == Failure::garbage)
            events.emplace_back("data: {\"choices\": [oops\n\n");
    }
    events.push_back(chunkEvent({}, Value("stop")));
    events.emplace_back("data: [DONE]\n\n");
    return events;
}

Reply answerReply(const ChatRequest &chat, std::string_view content, Failure failure)
{
    Reply reply;
    reply.stream = chat.stream;
    reply.waitsFirst = failure == Failure::slow;
    reply.breaksOff = failure == Failure::cut;
    if (chat.stream) {
        reply.contentType = "text/event-stream; charset=utf-8";
        reply.parts = streamEvents(content, failure);
    } else {
        reply.parts = {
            failure == Failure::garbage ? "<html>This is not JSON</html>" : completionJson(content)};
    }
    return reply;
}

Reply badRequest(std::string_view message)
{
    return errorReply(400, "invalid_request_error", "bad_request", message);
}

Reply chatReply(const Request &request, const Lexicon &lexicon, Failure always)
{
    const Failure byKey = failureOfKey(keyOf(request));
    const Failure failure = always == Failure::none || byKey == Failure::unauthorized ? byKey : always;
    if (failure == Failure::unauthorized)
        return errorReply(
            401, "authentication_error", "invalid_api_key", "The practice key is missing or wrong.");
    if (failure == Failure::noBalance)
        return errorReply(
            402, "insufficient_quota", "insufficient_balance", "The practice account is out of money.");
    if (failure == Failure::serverError)
        return errorReply(500, "server_error", "internal_error", "The practice provider was told to fail.");
    const auto chat = readChatRequest(request.body);
    if (!chat)
        return badRequest("The body is no chat-completions request.");
    const auto content = answerTo(lexicon, *chat);
    return content
        ? answerReply(*chat, *content, failure)
        : badRequest("The practice provider knows no JSON answer with the members that are asked for.");
}

Reply aboutReply(const Lexicon &lexicon)
{
    Reply reply;
    reply.contentType = "text/plain; charset=utf-8";
    reply.parts = {"Nimbrelle's practice provider\n\n"
                   "It answers POST .../chat/completions from a built-in list of "
        + std::to_string(lexicon.entries().size())
        + " words. It is no AI; it is there for trying\nNimbrelle out, for demonstrations and for tests. "
          "Any key but \"wrong\" is accepted; keys such as\n\"fail-402\" or \"fail-cut\" make a request "
          "fail.\n\n"
          "这是 Nimbrelle 内置的练习服务，只会讲词库里的词，不是 AI。\n"};
    return reply;
}

Reply wrongMethod(std::string_view allowed)
{
    Reply reply =
        errorReply(405, "invalid_request_error", "method_not_allowed", "This address takes another method.");
    reply.allow = allowed;
    return reply;
}

} // namespace

Reply replyTo(const Request &request, const Lexicon &lexicon, Failure always)
{
    if (request.bodyTooLarge)
        return errorReply(413, "invalid_request_error", "too_large", "The body is larger than 1 MiB.");
    if (request.path.ends_with("/chat/completions"))
        return request.method == "POST" ? chatReply(request, lexicon, always) : wrongMethod("POST");
    if (request.path == "/")
        return request.method == "GET" ? aboutReply(lexicon) : wrongMethod("GET");
    return errorReply(404, "invalid_request_error", "not_found", "There is nothing at this address.");
}

} // namespace nimbrelle::practice
