#include "server/support/TestServer.h"

#include <array>
#include <gmock/gmock.h>
#include <thread>

using namespace nimbrelle::server;
using testing::HasSubstr;
using testing::Not;

TEST(Protocol, ARoundOfReadsAndWritesOverOneConnection)
{
    TestServer server;
    TlsClient client(server.port());
    const auto ask = [&](const char *method, const std::string &headers = {}, const std::string &body = {}) {
        return client.exchange(TestServer::bundleRequest(method, headers, body));
    };
    EXPECT_EQ(client.exchange(requestText("GET", "/v1/ping", TestServer::token)).status, 200);
    EXPECT_EQ(ask("GET", "If-None-Match: \"0\"\r\n").status, 404);
    EXPECT_EQ(client.exchange(requestText("PUT", "/v1/bundle", "wrong", "", documentOf(3))).status, 401);

    const Reply written = ask("PUT", "If-Match: \"0\"\r\n", documentOf(3));
    EXPECT_EQ(written.status, 200);
    EXPECT_EQ(written.header("etag"), "\"1\"");

    const Reply read = ask("GET");
    EXPECT_EQ(read.status, 200);
    EXPECT_EQ(read.header("etag"), "\"1\"");
    EXPECT_EQ(read.header("content-type"), "application/json");
    EXPECT_EQ(read.body, documentOf(3));
    EXPECT_EQ(ask("HEAD").header("content-length"), std::to_string(documentOf(3).size()));

    const Reply unchanged = ask("GET", "If-None-Match: \"1\"\r\n");
    EXPECT_EQ(unchanged.status, 304);
    EXPECT_EQ(unchanged.header("etag"), "\"1\"");
    EXPECT_EQ(unchanged.body, "");

    EXPECT_EQ(ask("PUT", "If-Match: \"0\"\r\n", documentOf(9)).status, 412);
    client.send(TestServer::bundleRequest("PUT", "If-Match: \"1\"\r\nTransfer-Encoding: chunked\r\n"));
    for (const char byte : documentOf(4))
        client.send(std::string("1\r\n") + byte + "\r\n");
    EXPECT_EQ(client.exchange("0\r\n\r\n").header("etag"), "\"2\"");
    EXPECT_EQ(ask("GET", "If-None-Match: \"1\"\r\n").body, documentOf(4));
}

TEST(Protocol, ConditionsAreReadAsHttpHasThem)
{
    TestServer server;
    const auto get = [&](const std::string &condition) { return server.get(condition + "\r\n").status; };
    const auto put = [&](const std::string &condition) {
        return server.request(TestServer::bundleRequest("PUT", condition + "\r\n", documentOf(1))).status;
    };
    EXPECT_EQ(put("If-Match: *"), 412);
    EXPECT_EQ(put("If-None-Match: *"), 200);
    EXPECT_EQ(put("If-None-Match: *"), 412);
    EXPECT_EQ(put("If-Match: W/\"1\""), 412);
    EXPECT_EQ(put("If-Match: \"1\"\r\nIf-None-Match: W/\"1\""), 412);
    EXPECT_EQ(put("If-Match: 1"), 400);
    EXPECT_EQ(get("If-None-Match: W/\"1\""), 304);
    EXPECT_EQ(get("If-None-Match: \"5\"\r\nIf-None-Match: \"1\""), 304);
    EXPECT_EQ(get("If-None-Match: \"2\", \"01\""), 200);
    EXPECT_EQ(get("If-Match: \"2\""), 412);
    EXPECT_EQ(get("If-None-Match: 1"), 400);
    EXPECT_EQ(put("If-Match: \"5\", \"1\""), 200);
    EXPECT_EQ(put("If-Match: *"), 200);
    EXPECT_EQ(server.get().header("etag"), "\"3\"");
}

TEST(Protocol, WhatIsNoPartOfItIsRefused)
{
    TestServer server;
    const auto status = [&](const std::string &text) { return server.request(text).status; };
    const std::string &token = TestServer::token;
    EXPECT_EQ(status(requestText("GET", "/v1/ping", "")), 401);
    EXPECT_EQ(status(requestText("GET", "/v1/bundle", token + "x")), 401);
    EXPECT_EQ(status(requestText("GET", "/v1/ping", "", "Authorization: Basic " + token + "\r\n")), 401);
    EXPECT_EQ(status(requestText("GET", "/v1/ping", "", "Authorization: bearer  " + token + "\r\n")), 200);
    EXPECT_EQ(status(requestText("GET", "/v1/other", token)), 404);
    const Reply wrongMethod = server.request(TestServer::bundleRequest("POST", "", "{}"));
    EXPECT_EQ(wrongMethod.status, 405);
    EXPECT_EQ(wrongMethod.header("allow"), "GET, HEAD, PUT");
    EXPECT_EQ(status(TestServer::bundleRequest("PUT", "", "{}")), 428);
    EXPECT_EQ(server.put("\"0\"", "[1,2,3]").status, 400);
    EXPECT_EQ(server.get().status, 404);
}

TEST(Protocol, OneOfManyWritersWinsEachVersion)
{
    TestServer server;
    std::array<std::atomic<int>, 8> won{};
    std::atomic<int> lost = 0;
    std::vector<std::jthread> threads;
    for (int writer = 0; writer < 6; ++writer) {
        threads.emplace_back([&] {
            TlsClient client(server.port());
            for (std::size_t version = 0; version < won.size(); ++version) {
                const std::string condition = "If-Match: \"" + std::to_string(version) + "\"\r\n";
                const int status =
                    client.exchange(TestServer::bundleRequest("PUT", condition, documentOf(5))).status;
                won[version] += status == 200 ? 1 : 0;
                lost += status == 412 ? 1 : 0;
            }
        });
    }
    threads.clear();
    for (const auto &each : won)
        EXPECT_EQ(each, 1);
    EXPECT_EQ(lost, 5 * won.size());
}

TEST(Protocol, TheLogKeepsSecrets)
{
    TestServer server;
    server.put("\"0\"", documentOf(1));
    server.request(requestText("GET", "/" + TestServer::token, TestServer::token));
    server.request(requestText("GET", "/v1/bundle?token=" + TestServer::token, TestServer::token));
    server.http().stop(std::chrono::seconds(5));
    EXPECT_THAT(server.log(), HasSubstr("127.0.0.1 first PUT /v1/bundle 200"));
    EXPECT_THAT(server.log(), HasSubstr("GET (other) 404"));
    EXPECT_THAT(server.log(), Not(HasSubstr(TestServer::token)));
}
