#include "practice/Routing.h"

#include "practice/Contracts.h"
#include "practice/JsonText.h"
#include "practice/Pieces.h"

#include <chrono>

namespace nimbrelle::practice {

static constexpr std::string_view chatPath = "/chat/completions";
static constexpr std::string_view model = "nimbrelle-practice";

static Reply errorReply(
    unsigned status, std::string_view type, std::string_view code, std::string_view message)
{
    JsonText json;
    json.object([&] {
        json.key("error").object([&] {
            json.member("message", message).member("type", type);
            json.key("param").null();
            json.member("code", code);
        });
    });
    Reply reply;
    reply.status = status;
    reply.parts = {json.text()};
    return reply;
}

static std::string keyOf(std::string_view authorization)
{
    constexpr std::string_view scheme = "bearer ";
    if (!foldedAscii(authorization).starts_with(scheme))
        return {};
    return std::string(trimmed(authorization.substr(scheme.size())));
}

static void writeHead(JsonText &json, std::string_view object)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    json.member("id", "practice").member("object", object);
    json.key("created").integer(std::chrono::duration_cast<std::chrono::seconds>(now).count());
    json.member("model", model);
}

static std::string completionJson(std::string_view content)
{
    JsonText json;
    json.object([&] {
        writeHead(json, "chat.completion");
        json.key("choices").array([&] {
            json.object([&] {
                json.key("index").integer(0);
                json.key("message").object(
                    [&] { json.member("role", "assistant").member("content", content); });
                json.member("finish_reason", "stop");
            });
        });
    });
    return json.text();
}

/// One event of a stream; `key` names the member of its delta, and an empty key ends the answer.
static std::string chunkEvent(std::string_view key, std::string_view text)
{
    JsonText json;
    json.object([&] {
        writeHead(json, "chat.completion.chunk");
        json.key("choices").array([&] {
            json.object([&] {
                json.key("index").integer(0);
                json.key("delta").object([&] {
                    if (!key.empty())
                        json.member(key, text);
                });
                json.key("finish_reason");
                key.empty() ? json.string("stop") : json.null();
            });
        });
    });
    return "data: " + json.text() + "\n\n";
}

static std::vector<std::string> streamEvents(std::string_view content, Failure failure)
{
    std::vector<std::string> events = {chunkEvent("role", "assistant")};
    for (const std::string &piece : piecesOf(content)) {
        events.push_back(chunkEvent("content", piece));
        if (failure == Failure::garbage)
            events.emplace_back("data: {\"choices\": [oops\n\n");
    }
    events.push_back(chunkEvent({}, {}));
    events.emplace_back("data: [DONE]\n\n");
    return events;
}

static Reply answerReply(const Lexicon &lexicon, const ChatRequest &chat, Failure failure)
{
    const std::string content = answerContent(lexicon, chat);
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

static Reply chatReply(const Request &request, const Lexicon &lexicon, Failure always)
{
    const Failure byKey = failureOfKey(keyOf(request.authorization));
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
        return errorReply(
            400, "invalid_request_error", "bad_request", "The body is no chat-completions request.");
    return answerReply(lexicon, *chat, failure);
}

static Reply aboutReply(const Lexicon &lexicon)
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

static Reply wrongMethod(std::string_view allowed)
{
    Reply reply =
        errorReply(405, "invalid_request_error", "method_not_allowed", "This address takes another method.");
    reply.allow = allowed;
    return reply;
}

Reply replyTo(const Request &request, const Lexicon &lexicon, Failure always)
{
    if (request.bodyTooLarge)
        return errorReply(413, "invalid_request_error", "too_large", "The body is larger than 1 MiB.");
    if (request.path.ends_with(chatPath))
        return request.method == "POST" ? chatReply(request, lexicon, always) : wrongMethod("POST");
    if (request.path == "/")
        return request.method == "GET" ? aboutReply(lexicon) : wrongMethod("GET");
    return errorReply(404, "invalid_request_error", "not_found", "There is nothing at this address.");
}

} // namespace nimbrelle::practice
