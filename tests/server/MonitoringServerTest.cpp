#include "server/MonitoringServer.h"

#include "server/StoreFactory.h"
#include "server/support/PostgresServer.h"

#include <gmock/gmock.h>

using namespace nimbrelle::server;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

std::string ask(const MonitoringServer &monitoring, const std::string &request)
{
    TlsClient client(monitoring.port());
    client.sendRaw(request + " HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    return client.receiveRaw();
}

} // namespace

TEST(MonitoringServer, CountsWithoutNamesOrTokens)
{
    TestServer server;
    const MonitoringServer monitoring(
        std::make_unique<ListeningSocket>("127.0.0.1", 0), server.http(), server.store());
    const std::string body = documentOf(3);
    server.put("\"0\"", body);
    server.put("\"0\"", body);
    server.get();
    server.request(requestText("GET", "/v1/ping", "wrong"));
    server.request(requestText("GET", "/" + TestServer::token, TestServer::token));
    EXPECT_TRUE(eventually([&] {
        return ask(monitoring, "GET /metrics").find("kind=\"other\",status=\"404\"} 1") != std::string::npos;
    }));
    TlsClient open(server.port());
    open.handshake();
    const std::string metrics = ask(monitoring, "GET /metrics");
    for (const std::string &line : {std::string("requests_total{kind=\"write\",status=\"200\"} 1"),
             std::string("requests_total{kind=\"write\",status=\"412\"} 1"),
             std::string("requests_total{kind=\"read\",status=\"200\"} 1"),
             std::string("requests_total{kind=\"ping\",status=\"401\"} 1"),
             std::string("request_seconds_bucket{kind=\"write\",le=\"+Inf\"} 2"),
             std::string("request_seconds_count{kind=\"write\"} 2"),
             "received_bytes_total " + std::to_string(2 * body.size()),
             "sent_bytes_total " + std::to_string(body.size()), std::string("store_errors_total 0"),
             "held_bytes " + std::to_string(body.size())})
        EXPECT_THAT(metrics, HasSubstr("\nnimbrelle_" + line + "\n"));
    EXPECT_THAT(metrics, Not(HasSubstr("open_connections 0")));
    EXPECT_THAT(metrics, AllOf(Not(HasSubstr(TestServer::token)), Not(HasSubstr("first"))));
}

TEST(MonitoringServer, SaysWhetherTheStoreCanBeRead)
{
    TestServer server;
    const MonitoringServer monitoring(
        std::make_unique<ListeningSocket>("127.0.0.1", 0), server.http(), server.store());
    EXPECT_THAT(ask(monitoring, "GET /healthz"), AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("ok")));
    EXPECT_THAT(ask(monitoring, "GET /v1/bundle"), StartsWith("HTTP/1.1 404"));
    EXPECT_THAT(ask(monitoring, "DELETE /metrics"), StartsWith("HTTP/1.1 405"));
    server.breakStore();
    EXPECT_THAT(ask(monitoring, "GET /healthz"), StartsWith("HTTP/1.1 503"));
    EXPECT_EQ(server.get().status, 500);
    EXPECT_TRUE(eventually(
        [&] { return ask(monitoring, "GET /metrics").find("store_errors_total 1\n") != std::string::npos; }));
}

TEST(MonitoringServer, WhatIsBrokenOffIsNotCountedAsSent)
{
    TestServer server({.bodyTimeout = std::chrono::milliseconds(200)});
    const MonitoringServer monitoring(
        std::make_unique<ListeningSocket>("127.0.0.1", 0), server.http(), server.store());
    server.store().append(1, 0, {.body = documentOf(1, "a", 32 << 20)}, {});
    TlsClient unread(server.port());
    unread.send(TestServer::bundleRequest("GET"));
    EXPECT_TRUE(eventually([&] { return server.log().find("broken off") != std::string::npos; }));
    EXPECT_THAT(ask(monitoring, "GET /metrics"),
        AllOf(
            HasSubstr("requests_total{kind=\"read\",status=\"0\"} 1\n"), HasSubstr("sent_bytes_total 0\n")));
    EXPECT_THAT(server.log(), HasSubstr("out=- "));
}

TEST(MonitoringServer, TellsWhatItCountedWhileTheStoreIsStuck)
{
    TestServer server;
    PostgresServer &postgres = PostgresServer::shared();
    const StoreLocation location(postgres.newDatabase());
    createStore(location);
    const auto store = openStore(location);
    const MonitoringServer monitoring(
        std::make_unique<ListeningSocket>("127.0.0.1", 0), server.http(), *store);
    postgres.freeze(true);
    std::vector<std::unique_ptr<TlsClient>> waiting;
    for (int index = 0; index < 10; ++index) {
        waiting.push_back(std::make_unique<TlsClient>(monitoring.port()));
        waiting.back()->sendRaw("GET /healthz HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THAT(ask(monitoring, "GET /metrics"), StartsWith("HTTP/1.1 200"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8)); // it may be stuck for 13
    postgres.freeze(false);
    EXPECT_EQ(std::ranges::count_if(waiting,
                  [](const auto &client) {
                      return client->receiveRaw().find("does not answer") != std::string::npos;
                  }),
        2);
}

TEST(Metrics, BucketsAddUp)
{
    Metrics metrics;
    for (const double seconds : {0.0005, 0.001, 0.3, 1'000'500.0})
        metrics.count({.kind = Metrics::RequestKind::read, .took = std::chrono::duration<double>(seconds)});
    const std::string text = metrics.text(0);
    EXPECT_THAT(text,
        AllOf(HasSubstr("le=\"0.001\"} 2\n"), HasSubstr("le=\"0.25\"} 2\n"), HasSubstr("le=\"0.5\"} 3\n"),
            HasSubstr("le=\"120\"} 3\n"), HasSubstr("le=\"+Inf\"} 4\n"),
            HasSubstr("_sum{kind=\"read\"} 1000500.3015\n"), HasSubstr("le=\"0.001\"")));
}
