#include "server/support/TestServer.h"

#include <gmock/gmock.h>
#include <map>

using namespace nimbrelle::server;
using namespace std::chrono;

namespace {

using Action = std::function<bool(TlsClient &)>;

std::string unfinishedPut(std::size_t announced, const std::string &sent)
{
    const std::string length = std::to_string(announced);
    return TestServer::bundleRequest("PUT", "If-Match: \"0\"\r\nContent-Length: " + length + "\r\n") + sent;
}

std::string putInChunks(const std::string &chunks)
{
    return TestServer::bundleRequest("PUT", "If-Match: \"0\"\r\nTransfer-Encoding: chunked\r\n") + chunks;
}

Action sending(const std::string &text)
{
    return [text](TlsClient &client) { return client.send(text); };
}

Action sendingRaw(const std::string &bytes)
{
    return [bytes](TlsClient &client) { return client.sendRaw(bytes); };
}

// How long the server bears a client that begins so, and goes on so now and then.
milliseconds timeUntilClosed(TestServer &server, const Action &begin, const Action &goOn)
{
    const auto start = steady_clock::now();
    TlsClient client(server.port());
    begin(client);
    eventually([&] { return !goOn(client) || client.isClosedWithin(20ms); });
    return duration_cast<milliseconds>(steady_clock::now() - start);
}

} // namespace

TEST(ServerLimits, SlowClientsDoNotKeepOthersWaiting)
{
    TestServer server;
    server.put("\"0\"", documentOf(1));
    const Action begins[] = {sendingRaw("\x16\x03\x01"), sending("GET /v1/bundle HTTP/1.1\r\nHost: "),
        sending(unfinishedPut(1000, "{\"words\""))};
    std::vector<std::unique_ptr<TlsClient>> slow;
    for (int index = 0; index < 106; ++index) {
        const std::string from = index < 100 ? "127.0.1." + std::to_string(index + 1) : "127.0.0.1";
        begins[index % 3](*slow.emplace_back(std::make_unique<TlsClient>(server.port(), from)));
    }
    const auto start = steady_clock::now();
    EXPECT_EQ(server.get().status, 200);
    EXPECT_EQ(server.put("\"1\"", documentOf(2)).status, 200);
    EXPECT_LT(steady_clock::now() - start, ServerLimits{}.headTimeout / 2);
}

TEST(ServerLimits, OneAddressCannotTakeAllConnections)
{
    TestServer server({.maxPerAddress = 4});
    std::vector<std::unique_ptr<TlsClient>> clients;
    const auto connected = [&] {
        return clients.emplace_back(std::make_unique<TlsClient>(server.port(), "127.0.0.9"))->handshake();
    };
    for (int index = 0; index < 4; ++index)
        ASSERT_TRUE(connected());
    EXPECT_FALSE(connected());
    EXPECT_EQ(server.get().status, 404);
    clients.clear();
    EXPECT_TRUE(eventually(connected));
}

TEST(ServerLimits, SilentConnectionsDoNotShutOthersOut)
{
    constexpr milliseconds headTime = 16s; // an eighth of it when all are taken
    TestServer server({.maxConnections = 64, .maxPerAddress = 8, .headTimeout = headTime});
    std::vector<std::unique_ptr<TlsClient>> silent;
    for (int index = 0; index < 90; ++index) {
        const std::string from = "127.0.1." + std::to_string(index % 15 + 1);
        silent.push_back(std::make_unique<TlsClient>(server.port(), from));
    }
    const auto start = steady_clock::now();
    EXPECT_EQ(server.get().status, 404);
    EXPECT_LT(steady_clock::now() - start, headTime / 2);
}

TEST(ServerLimits, BodiesThatAreOnlyDroppedDoNotShutOthersOut)
{
    constexpr milliseconds headTime = 16s;
    TestServer server({.maxConnections = 24, .maxPerAddress = 8, .headTimeout = headTime});
    const std::string wrongToken = requestText("PUT", "/v1/bundle", "wrong", "If-Match: \"0\"\r\n");
    const std::string body = "Content-Length: 10\r\n\r\n";
    const std::string starts[] = {wrongToken.substr(0, wrongToken.size() - 2) + body,
        wrongToken.substr(0, wrongToken.size() - 2) + "Transfer-Encoding: chunked\r\n\r\n1\r\n",
        TestServer::bundleRequest("GET", "Content-Length: 10\r\n")};
    std::vector<std::unique_ptr<TlsClient>> silent;
    for (int index = 0; index < 24; ++index) {
        const std::string from = "127.0.1." + std::to_string(index % 4 + 1);
        silent.push_back(std::make_unique<TlsClient>(server.port(), from));
        silent.back()->send(starts[index % 3]);
    }
    const auto start = steady_clock::now();
    EXPECT_EQ(server.get().status, 404);
    EXPECT_LT(steady_clock::now() - start, headTime / 2);
}

// A deadline can't come early, and without one a connection would stay for an hour: no machine is too slow.
TEST(ServerLimits, ATricklingClientIsCutAtItsDeadline)
{
    constexpr milliseconds limit = 400ms;
    const auto expectCut = [&](const char *where, milliseconds took) {
        EXPECT_GE(took, limit) << where;
        EXPECT_LT(took, 25s) << where;
    };
    const Action ping = [](TlsClient &client) {
        return client.exchange(requestText("GET", "/v1/ping", TestServer::token)).status == 200;
    };
    const Action wait = [](TlsClient &) { return true; };

    TestServer heads({.headTimeout = limit, .bodyTimeout = 1h});
    expectCut("handshake", timeUntilClosed(heads, sendingRaw("\x16\x03\x01\x02"), sendingRaw("\x01")));
    expectCut("head", timeUntilClosed(heads, sending("GET /v1/ping HTTP/1.1\r\nX: "), sending("x")));
    expectCut("idle after an answer", timeUntilClosed(heads, ping, wait));

    TestServer bodies({.headTimeout = 1h, .bodyTimeout = limit});
    expectCut("body", timeUntilClosed(bodies, sending(unfinishedPut(100'000, "{\"a\":\"")), sending("x")));
    EXPECT_EQ(bodies.store().version(1), 0);
}

TEST(ServerLimits, ASlowReaderIsCutToo)
{
    TestServer server({.bodyTimeout = 400ms});
    server.store().append(1, 0, {.body = documentOf(1, "a", 32 << 20)}, {});
    TlsClient client(server.port());
    client.send(TestServer::bundleRequest("GET"));
    EXPECT_TRUE(eventually([&] { return server.log().find("broken off") != std::string::npos; }));
    EXPECT_EQ(client.receive().status, 0);
}

TEST(ServerLimits, AnOverlongBodyIsRefusedBeforeItIsRead)
{
    TestServer server({.maxBody = 10'000});
    EXPECT_EQ(server.request(unfinishedPut(2'000'000, "")).status, 413);
    // Who sends all the same still gets the answer and not only a reset.
    EXPECT_EQ(server.put("\"0\"", documentOf(1, "a", 4 << 20)).status, 413);
    const std::string chunk = "1000\r\n" + std::string(4096, 'x') + "\r\n";
    EXPECT_EQ(server.request(putInChunks(chunk + chunk + chunk + "0\r\n\r\n")).status, 413);
    EXPECT_EQ(server.put("\"0\"", documentOf(1)).status, 200);
}

TEST(ServerLimits, UnfinishedBodiesShareABudget)
{
    TestServer server({.maxHeld = 1 << 20});
    const auto heldBytes = [&] { return server.http().heldBytes(); };
    TlsClient announcing(server.port());
    announcing.send(unfinishedPut(1'000'000, " "));
    EXPECT_TRUE(eventually([&] { return heldBytes() > 0; }));
    EXPECT_LT(heldBytes(), 100'000U);
    TlsClient sending(server.port());
    sending.send(unfinishedPut(900'000, std::string(800'000, ' ')));
    EXPECT_TRUE(eventually([&] { return heldBytes() >= 800'000; }));
    const std::string body = documentOf(1, "a", 700'000);
    const Reply refused = server.put("\"0\"", body);
    EXPECT_EQ(refused.status, 503);
    EXPECT_EQ(refused.header("retry-after"), "30");
    announcing.abort();
    sending.abort();
    EXPECT_TRUE(eventually([&] { return heldBytes() == 0; }));
    EXPECT_EQ(server.put("\"0\"", body).status, 200);
}

TEST(ServerLimits, UnreadAnswersShareTheBudgetToo)
{
    TestServer server({.maxHeld = 40 << 20});
    const auto addNotebook = [&](int index) {
        const std::string token = TestServer::token + std::to_string(index);
        server.store().addNotebook(std::to_string(index), "salt", sha256(token), {});
        const auto id = server.store().notebookOfToken(sha256(token))->id;
        server.store().append(id, 0, {.body = documentOf(1, "a", 9 << 20)}, {});
        return requestText("GET", "/v1/bundle", token);
    };
    std::vector<std::unique_ptr<TlsClient>> unread;
    std::map<int, int> statuses;
    for (int index = 0; index < 6; ++index) {
        const auto &client = unread.emplace_back(std::make_unique<TlsClient>(server.port()));
        client->send(addNotebook(index));
        ++statuses[client->receive(false).status];
    }
    EXPECT_EQ(statuses, (std::map<int, int>{{200, 4}, {503, 2}}));
    EXPECT_LE(server.http().heldBytes(), 40U << 20);

    // Who leaves makes room.
    unread.clear();
    const std::string again = addNotebook(7);
    EXPECT_TRUE(eventually([&] { return server.request(again).status == 200; }));
    // What is longer than the whole budget passes alone.
    server.store().append(1, 0, {.body = documentOf(1, "a", 50 << 20)}, {});
    EXPECT_TRUE(eventually([&] { return server.get().status == 200; }));
}

TEST(ServerLimits, MalformedInputIsSurvived)
{
    TestServer server;
    const std::string zeros(100'000, '\0');
    const std::string letters(100'000, 'a');
    for (const std::string &bytes :
        {std::string("GET / HTTP/1.1\r\n\r\n"), zeros, "\x16\x03\x01\xff\xff" + zeros}) {
        TlsClient client(server.port());
        client.sendRaw(bytes);
        EXPECT_TRUE(client.isClosedWithin(30s));
    }
    for (const std::string &text : {std::string("\r\n\r\n\r\n\r\nwhat\r\n\r\n"), std::string("GET\r\n\r\n"),
             zeros, std::string("GET / HTTP/9.9\r\n\r\n"), "GET /" + letters + " HTTP/1.1\r\nHost: a\r\n\r\n",
             requestText("GET", "/v1/ping", TestServer::token, "A: " + letters + "\r\n"),
             TestServer::bundleRequest("PUT", "If-Match: \"0\"\r\nContent-Length: -1\r\n"),
             TestServer::bundleRequest(
                 "PUT", "If-Match: \"0\"\r\nContent-Length: 99999999999999999999999\r\n"),
             putInChunks("zz\r\n")}) {
        TlsClient client(server.port());
        client.send(text);
        client.abort();
    }
    EXPECT_EQ(server.get().status, 404);
    EXPECT_EQ(server.put("\"0\"", documentOf(1)).status, 200);
}
