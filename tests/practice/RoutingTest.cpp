#include "practice/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace nimbrelle::practice {

using testing::HasSubstr;
using testing::StartsWith;

class Routing : public testing::Test {
protected:
    static Request chat(std::string authorization, std::string stream = "false")
    {
        const std::string messages = R"("messages": [{"role": "user", "content": "ngl 是什么"}])";
        return {.method = "POST",
            .path = "/v1/chat/completions",
            .authorization = std::move(authorization),
            .body = "{\"stream\": " + stream + ", " + messages + "}"};
    }
    Reply replyFor(const Request &request, Failure always = Failure::none) const
    {
        return replyTo(request, lexicon, always);
    }

    const Lexicon lexicon;
};

TEST_F(Routing, StatusFollowsTheKey)
{
    const std::pair<const char *, unsigned> cases[]{{"Bearer any", 200}, {"bearer  any ", 200}, {"", 401},
        {"Bearer ", 401}, {"Basic any", 401}, {"Bearer wrong", 401}, {"Bearer fail-401", 401},
        {"Bearer fail-402", 402}, {"Bearer fail-500", 500}, {"Bearer fail-nothing", 200}};
    for (const auto &[authorization, status] : cases)
        EXPECT_EQ(replyFor(chat(authorization)).status, status) << authorization;
    EXPECT_EQ(replyFor(chat("Bearer any"), Failure::noBalance).status, 402u);
    EXPECT_EQ(replyFor(chat("Bearer wrong"), Failure::slow).status, 401u);
}

TEST_F(Routing, StatusFollowsTheRequest)
{
    Request request = chat("Bearer k");
    request.method = "GET";
    EXPECT_EQ(replyFor(request).allow, "POST");
    EXPECT_EQ(replyFor({.method = "GET", .path = "/"}).status, 200u);
    EXPECT_EQ(replyFor({.method = "GET", .path = "/elsewhere"}).status, 404u);
    request.method = "POST";
    const std::string deep(100'000, '[');
    for (const char *body : {"", "[]", "{}", R"({"messages":[]})", R"({"messages":[1]})", deep.c_str(),
             "{\"messages\":[{\"role\":\"u\",\"content\":\"\xff\"}]}"}) {
        request.body = body;
        EXPECT_EQ(replyFor(request).status, 400u);
    }
    request.bodyTooLarge = true;
    EXPECT_EQ(replyFor(request).status, 413u);
}

TEST_F(Routing, AStreamCanFailInItsMiddle)
{
    const Reply whole = replyFor(chat("Bearer k", "true"));
    EXPECT_THAT(whole.contentType, StartsWith("text/event-stream"));
    EXPECT_THAT(whole.parts.front(), HasSubstr(R"("delta":{"role":"assistant"})"));
    EXPECT_EQ(whole.parts.back(), "data: [DONE]\n\n");
    EXPECT_TRUE(replyFor(chat("Bearer fail-cut", "true")).breaksOff);
    EXPECT_TRUE(replyFor(chat("Bearer fail-slow")).waitsFirst);
    EXPECT_THAT(replyFor(chat("Bearer fail-garbage")).parts.front(), StartsWith("<html>"));
    Reply garbled = replyFor(chat("Bearer fail-garbage", "true"));
    EXPECT_EQ(std::erase(garbled.parts, "data: {\"choices\": [oops\n\n"), whole.parts.size() - 3);
}

TEST(Pieces, TogetherAreTheTextAndDivideNoCharacter)
{
    const std::string text = "a\u0301b 👨‍👩‍👧 好👍🏽的\n- **x**：ok，说实话";
    std::string together;
    for (const std::string &piece : piecesOf(text))
        together += piece;
    EXPECT_EQ(together, text);
    EXPECT_THAT(piecesOf(text), testing::Contains(HasSubstr("👨‍👩‍👧")));
}

TEST(CommandLine, SaysWhatIsWrong)
{
    const auto read = [](std::vector<const char *> arguments) {
        std::ostringstream out, errors;
        arguments.insert(arguments.begin(), "nimbrelle-practice");
        const auto parsed =
            readCommandLine(static_cast<int>(arguments.size()), arguments.data(), out, errors);
        return std::holds_alternative<CommandLine>(parsed) ? "good" : errors.str();
    };
    EXPECT_EQ(read({"--port", "8080", "--delay-ms", "0", "--fail", "slow", "--port-file", "p"}), "good");
    const std::vector<std::vector<const char *>> wrong = {{"--port"}, {"--port", "65536"}, {"--port", "-1"},
        {"--port", "1x"}, {"--delay-ms", "99999999"}, {"--fail", "403"}, {"--port-file", ""}, {"stray"}};
    for (const auto &arguments : wrong)
        EXPECT_THAT(read(arguments), testing::MatchesRegex("nimbrelle-practice: .* \\(see --help\\)\n"));
}

} // namespace nimbrelle::practice
