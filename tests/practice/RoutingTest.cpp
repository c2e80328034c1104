#include "practice/Routing.h"

#include "PracticeLexicon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

using testing::EndsWith;
using testing::HasSubstr;

static Request chat(std::string authorization, bool stream = false)
{
    return {"POST", "/v1/chat/completions", std::move(authorization),
        std::string(R"({"messages":[{"role":"user","content":"ngl 是什么"}],"stream":)")
            + (stream ? "true}" : "false}"),
        false};
}

static Reply replyFor(const Request &request, Failure always = Failure::none)
{
    return replyTo(request, practiceLexicon(), always);
}

TEST(Routing, StatusFollowsTheKey)
{
    const std::vector<std::pair<std::string, unsigned>> cases = {{"Bearer any", 200}, {"bearer  any ", 200},
        {"", 401}, {"Bearer ", 401}, {"Basic any", 401}, {"Bearer wrong", 401}, {"Bearer fail-401", 401},
        {"Bearer fail-402", 402}, {"Bearer fail-500", 500}, {"Bearer fail-nothing", 200}};
    for (const auto &[authorization, status] : cases) {
        const Reply reply = replyFor(chat(authorization));
        EXPECT_EQ(reply.status, status) << authorization;
        if (status != 200)
            EXPECT_THAT(reply.parts.front(), testing::StartsWith(R"({"error":{"message":)"));
    }
    EXPECT_EQ(replyFor(chat("Bearer any"), Failure::noBalance).status, 402u);
    EXPECT_EQ(replyFor(chat("Bearer wrong"), Failure::slow).status, 401u);
}

TEST(Routing, AddressesAndMethods)
{
    Request request = chat("Bearer k");
    request.path = "/chat/completions";
    EXPECT_EQ(replyFor(request).status, 200u);
    request.method = "GET";
    EXPECT_EQ(replyFor(request).allow, "POST");
    EXPECT_EQ(replyFor({"GET", "/", "", "", false}).status, 200u);
    EXPECT_EQ(replyFor({"GET", "/elsewhere", "", "", false}).status, 404u);
    request = chat("Bearer k");
    request.bodyTooLarge = true;
    EXPECT_EQ(replyFor(request).status, 413u);
    request = chat("Bearer k");
    request.body = "no json";
    EXPECT_EQ(replyFor(request).status, 400u);
}

TEST(Routing, StreamBeginsWithTheRoleAndEndsWithDone)
{
    const Reply reply = replyFor(chat("Bearer k", true));
    EXPECT_TRUE(reply.stream);
    EXPECT_THAT(reply.contentType, testing::StartsWith("text/event-stream"));
    ASSERT_GT(reply.parts.size(), 4u);
    EXPECT_THAT(reply.parts.front(), HasSubstr(R"("delta":{"role":"assistant"})"));
    EXPECT_EQ(reply.parts.back(), "data: [DONE]\n\n");
    for (const std::string &part : reply.parts)
        EXPECT_THAT(part, testing::AllOf(testing::StartsWith("data: "), EndsWith("\n\n")));
}

TEST(Routing, FailuresOfTheBody)
{
    EXPECT_TRUE(replyFor(chat("Bearer fail-cut", true)).breaksOff);
    EXPECT_TRUE(replyFor(chat("Bearer fail-slow")).waitsFirst);
    EXPECT_THAT(replyFor(chat("Bearer fail-garbage")).parts.front(), testing::StartsWith("<html>"));
    const Reply whole = replyFor(chat("Bearer k", true));
    Reply garbled = replyFor(chat("Bearer fail-garbage", true));
    EXPECT_EQ(std::erase(garbled.parts, "data: {\"choices\": [oops\n\n"), whole.parts.size() - 3);
    EXPECT_EQ(garbled.parts.size(), whole.parts.size());
}

} // namespace nimbrelle::practice
