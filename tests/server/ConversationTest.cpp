#include "server/support/Stage.h"

#include <gmock/gmock.h>
#include <latch>
#include <thread>

using namespace nimbrelle::server;
using testing::HasSubstr;
using testing::Not;

TEST(Conversation, ARoundOfReadsAndWrites)
{
    Stage stage;
    EXPECT_EQ(stage.request(requestText("GET", "/v1/ping", Stage::token)).status, 200);
    EXPECT_EQ(stage.get().status, 404);

    const Reply written = stage.put("\"0\"", documentOf(3));
    EXPECT_EQ(written.status, 200);
    EXPECT_EQ(written.header("etag"), "\"1\"");

    const Reply read = stage.get();
    EXPECT_EQ(read.status, 200);
    EXPECT_EQ(read.header("etag"), "\"1\"");
    EXPECT_EQ(read.header("content-type"), "application/json");
    EXPECT_EQ(read.body, documentOf(3));

    const Reply unchanged = stage.get("If-None-Match: \"1\"\r\n");
    EXPECT_EQ(unchanged.status, 304);
    EXPECT_EQ(unchanged.header("etag"), "\"1\"");
    EXPECT_EQ(unchanged.body, "");

    EXPECT_EQ(stage.put("\"0\"", documentOf(9)).status, 412);
    EXPECT_EQ(stage.put("\"1\"", documentOf(4)).header("etag"), "\"2\"");
    EXPECT_EQ(stage.get("If-None-Match: \"1\"\r\n").body, documentOf(4));
}

TEST(Conversation, ConditionsAreReadAsHttpHasThem)
{
    Stage stage;
    stage.put("\"0\"", documentOf(1));
    const auto get = [&](const char *line) { return stage.get(std::string(line) + "\r\n").status; };
    EXPECT_EQ(get("If-None-Match: W/\"1\""), 304);
    EXPECT_EQ(get("If-None-Match: \"5\", \"1\""), 304);
    EXPECT_EQ(get("If-None-Match: \"5\"\r\nIf-None-Match: \"1\""), 304);
    EXPECT_EQ(get("If-None-Match: *"), 304);
    EXPECT_EQ(get("If-None-Match: \"2\""), 200);
    EXPECT_EQ(get("If-Match: \"2\""), 412);
    EXPECT_EQ(get("If-None-Match: 1"), 400);
    EXPECT_EQ(stage.put("W/\"1\"", documentOf(1)).status, 412);
    EXPECT_EQ(stage.put("1", documentOf(1)).status, 400);
    EXPECT_EQ(stage.put("\"5\", \"1\"", documentOf(1)).status, 200);
    EXPECT_EQ(stage.put("*", documentOf(1)).header("etag"), "\"3\"");
}

TEST(Conversation, WhatIsNoPartOfItIsRefused)
{
    Stage stage;
    const auto status = [&](const std::string &text) { return stage.request(text).status; };
    EXPECT_EQ(status(requestText("GET", "/v1/ping", "")), 401);
    EXPECT_EQ(status(requestText("GET", "/v1/bundle", Stage::token + "x")), 401);
    EXPECT_EQ(
        status(requestText("GET", "/v1/ping", "", "Authorization: Basic " + Stage::token + "\r\n")), 401);
    EXPECT_EQ(
        status(requestText("GET", "/v1/ping", "", "Authorization: bearer  " + Stage::token + "\r\n")), 200);
    EXPECT_EQ(status(requestText("GET", "/v1/other", Stage::token)), 404);
    const Reply wrongMethod = stage.request(requestText("POST", "/v1/bundle", Stage::token, "", "{}"));
    EXPECT_EQ(wrongMethod.status, 405);
    EXPECT_EQ(wrongMethod.header("allow"), "GET, HEAD, PUT");
    EXPECT_EQ(status(requestText("PUT", "/v1/bundle", Stage::token, "", "{}")), 428);
    EXPECT_EQ(stage.put("\"0\"", "[1,2,3]").status, 400);
    EXPECT_EQ(stage.get().status, 404);
}

TEST(Conversation, HeadSaysWhatGetWould)
{
    Stage stage;
    stage.put("\"0\"", documentOf(2));
    TlsClient client(stage.port());
    const auto head = client.exchange(requestText("HEAD", "/v1/bundle", Stage::token));
    ASSERT_TRUE(head);
    EXPECT_EQ(head->status, 200);
    EXPECT_EQ(head->header("content-length"), std::to_string(documentOf(2).size()));
    // No body came: the connection serves on.
    EXPECT_EQ(client.exchange(requestText("GET", "/v1/bundle", Stage::token))->body, documentOf(2));
}

TEST(Conversation, ARefusedWriteLeavesTheConnectionInUse)
{
    Stage stage;
    TlsClient client(stage.port());
    EXPECT_EQ(
        client.exchange(requestText("PUT", "/v1/bundle", "wrong", "If-Match: \"0\"\r\n", documentOf(3)))
            ->status,
        401);
    EXPECT_EQ(
        client.exchange(requestText("GET", "/v1/bundle", Stage::token, "If-None-Match: \"0\"\r\n"))->status,
        404);
    EXPECT_EQ(
        client.exchange(requestText("PUT", "/v1/bundle", Stage::token, "If-Match: \"0\"\r\n", documentOf(3)))
            ->status,
        200);
    EXPECT_EQ(
        client.exchange(requestText("GET", "/v1/bundle", Stage::token, "If-None-Match: \"1\"\r\n"))->status,
        304);
    EXPECT_EQ(client.exchange(requestText("GET", "/v1/bundle", Stage::token))->status, 200);
}

TEST(Conversation, ABodyInChunksIsABody)
{
    Stage stage;
    const std::string body = documentOf(1);
    std::string request =
        requestText("PUT", "/v1/bundle", Stage::token, "If-Match: \"0\"\r\nTransfer-Encoding: chunked\r\n");
    for (const char byte : body)
        request += std::string("1\r\n") + byte + "\r\n";
    EXPECT_EQ(stage.request(request + "0\r\n\r\n").status, 200);
    EXPECT_EQ(stage.get().body, body);
}

TEST(Conversation, ExactlyOneOfManyWritersWinsEachVersion)
{
    Stage stage;
    constexpr int writers = 6;
    constexpr int rounds = 8;
    for (int version = 0; version < rounds; ++version) {
        std::latch start(writers);
        std::atomic<int> won = 0;
        std::atomic<int> lost = 0;
        std::string winner;
        std::vector<std::jthread> threads;
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([&, writer] {
                const std::string body = documentOf(5, "writer" + std::to_string(writer));
                TlsClient client(stage.port());
                client.shakeHands();
                start.arrive_and_wait();
                const auto reply = client.exchange(requestText(
                    "PUT", "/v1/bundle", Stage::token, "If-Match: " + entityTag(version) + "\r\n", body));
                lost += reply && reply->status == 412 ? 1 : 0;
                if (reply && reply->status == 200 && ++won == 1)
                    winner = body;
            });
        }
        threads.clear();
        ASSERT_EQ(won, 1) << version;
        EXPECT_EQ(lost, writers - 1);
        EXPECT_EQ(stage.get().header("etag"), entityTag(version + 1));
        EXPECT_EQ(stage.get().body, winner);
    }
}

TEST(Conversation, TheLogKeepsSecrets)
{
    Stage stage;
    stage.put("\"0\"", documentOf(1));
    stage.request(requestText("GET", "/" + Stage::token, Stage::token));
    stage.request(requestText("GET", "/v1/bundle?token=" + Stage::token, Stage::token));
    stage.server().stop(std::chrono::seconds(5));
    EXPECT_THAT(stage.log(), HasSubstr("127.0.0.1 first PUT /v1/bundle 200"));
    EXPECT_THAT(stage.log(), HasSubstr("GET (other) 404"));
    EXPECT_THAT(stage.log(), Not(HasSubstr(Stage::token)));
}
