#include "server/support/Stage.h"

#include <functional>
#include <gmock/gmock.h>
#include <memory>

using namespace nimbrelle::server;
using namespace std::chrono;
using testing::AnyOf;
using testing::HasSubstr;

namespace {

std::string unfinishedPut(std::size_t announced, const std::string &sent)
{
    const std::string more = "If-Match: \"0\"\r\nContent-Length: " + std::to_string(announced) + "\r\n";
    return requestText("PUT", "/v1/bundle", Stage::token, more) + sent;
}

// A byte now and then until the connection ends; how long that took.
milliseconds trickle(TlsClient &client, const std::function<bool()> &sendByte)
{
    const auto start = steady_clock::now();
    while (sendByte() && !client.isEndedWithin(20ms)) {
        if (steady_clock::now() - start > 8s)
            break;
    }
    return duration_cast<milliseconds>(steady_clock::now() - start);
}

} // namespace

TEST(ServerLimits, SlowClientsDoNotKeepOthersWaiting)
{
    Stage stage;
    stage.put("\"0\"", documentOf(1));
    std::vector<std::unique_ptr<TlsClient>> slow;
    for (int index = 0; index < 106; ++index) {
        const std::string from = index < 100 ? "127.0.1." + std::to_string(index + 1) : "127.0.0.1";
        auto &client = *slow.emplace_back(std::make_unique<TlsClient>(stage.port(), from));
        if (index % 3 == 0)
            client.sendRaw("\x16\x03\x01");
        else if (index % 3 == 1)
            client.send("GET /v1/bundle HTTP/1.1\r\nHost: ");
        else
            client.send(unfinishedPut(1000, "{\"words\""));
    }
    const auto start = steady_clock::now();
    EXPECT_EQ(stage.get().status, 200);
    EXPECT_EQ(stage.put("\"1\"", documentOf(2)).status, 200);
    EXPECT_LT(steady_clock::now() - start, 2s);
}

TEST(ServerLimits, OneAddressCannotTakeAllConnections)
{
    ServerLimits limits;
    limits.maxPerAddress = 4;
    Stage stage(limits);
    std::vector<std::unique_ptr<TlsClient>> greedy;
    for (int index = 0; index < 4; ++index)
        ASSERT_TRUE(
            greedy.emplace_back(std::make_unique<TlsClient>(stage.port(), "127.0.0.9"))->shakeHands());
    TlsClient fifth(stage.port(), "127.0.0.9");
    EXPECT_FALSE(fifth.shakeHands());
    EXPECT_EQ(stage.request(requestText("GET", "/v1/ping", Stage::token)).status, 200);
    greedy.clear();
    // The server hears of the end in its own time.
    Reply reply;
    for (int attempt = 0; attempt < 100 && reply.status != 200; ++attempt)
        reply = stage.request(requestText("GET", "/v1/ping", Stage::token), "127.0.0.9");
    EXPECT_EQ(reply.status, 200);
}

TEST(ServerLimits, ATricklingSenderIsCutAtItsDeadline)
{
    ServerLimits limits;
    limits.headTime = 600ms;
    limits.bodyTime = 600ms;
    Stage stage(limits);

    TlsClient inHandshake(stage.port());
    inHandshake.sendRaw("\x16\x03\x01\x02");
    EXPECT_THAT(trickle(inHandshake, [&] { return inHandshake.sendRaw("\x01"); }), testing::Lt(5s));

    TlsClient inHead(stage.port());
    inHead.send("GET /v1/ping HTTP/1.1\r\nX: ");
    const auto headTook = trickle(inHead, [&] { return inHead.send("x"); });
    EXPECT_LT(headTook, 5s);

    TlsClient inBody(stage.port());
    inBody.send(unfinishedPut(100'000, "{\"a\":\""));
    const auto bodyTook = trickle(inBody, [&] { return inBody.send("x"); });
    EXPECT_GT(bodyTook, 300ms);
    EXPECT_LT(bodyTook, 5s);
    EXPECT_EQ(stage.get().status, 404);
}

TEST(ServerLimits, ASlowReaderIsCutToo)
{
    ServerLimits limits;
    limits.bodyTime = 600ms;
    Stage stage(limits);
    stage.store().append(1, 0, {.body = documentOf(1, "a", 32 << 20)}, {});
    TlsClient client(stage.port());
    client.send(requestText("GET", "/v1/bundle", Stage::token));
    const auto start = steady_clock::now();
    while (stage.log().find("broken off") == std::string::npos && steady_clock::now() - start < 5s)
        std::this_thread::yield();
    EXPECT_THAT(stage.log(), HasSubstr("broken off"));
    EXPECT_FALSE(client.receive());
}

TEST(ServerLimits, AnIdleConnectionIsServedUntilItsTimeIsUp)
{
    ServerLimits limits;
    limits.headTime = 500ms;
    Stage stage(limits);
    TlsClient client(stage.port());
    for (int request = 0; request < 3; ++request)
        EXPECT_EQ(client.exchange(requestText("GET", "/v1/ping", Stage::token))->status, 200);
    EXPECT_TRUE(client.isEndedWithin(5s));
}

TEST(ServerLimits, AnOverlongBodyIsRefusedBeforeItIsRead)
{
    ServerLimits limits;
    limits.maxBody = 10'000;
    Stage stage(limits);
    TlsClient patient(stage.port());
    EXPECT_EQ(patient.exchange(unfinishedPut(2'000'000, ""))->status, 413);
    // Who sends all the same still gets the answer and not only a reset.
    EXPECT_EQ(stage.put("\"0\"", documentOf(1, "a", 4 << 20)).status, 413);

    std::string chunks =
        requestText("PUT", "/v1/bundle", Stage::token, "If-Match: \"0\"\r\nTransfer-Encoding: chunked\r\n");
    for (int index = 0; index < 3; ++index)
        chunks += "1000\r\n" + std::string(4096, 'x') + "\r\n";
    EXPECT_EQ(stage.request(chunks + "0\r\n\r\n").status, 413);
    EXPECT_EQ(stage.put("\"0\"", documentOf(1)).status, 200);
}

TEST(ServerLimits, UnfinishedBodiesShareABudget)
{
    ServerLimits limits;
    limits.maxHeld = 1 << 20;
    Stage stage(limits);
    TlsClient holder(stage.port());
    holder.send(unfinishedPut(900'000, std::string(800'000, ' ')));
    const std::string big = documentOf(1, "a", 700'000);
    const auto waitFor = [&](const auto &isSo) {
        const auto end = steady_clock::now() + 8s;
        while (!isSo() && steady_clock::now() < end)
            std::this_thread::yield();
    };
    waitFor([&] { return stage.server().heldBytes() >= 800'000; });
    const Reply refused = stage.put("\"0\"", big);
    EXPECT_EQ(refused.status, 503);
    EXPECT_EQ(refused.header("retry-after"), "30");
    holder.breakOff();
    waitFor([&] { return stage.server().heldBytes() == 0; });
    const Reply taken = stage.put("\"0\"", big);
    EXPECT_EQ(taken.status, 200);
}

TEST(ServerLimits, ABodyThatBreaksOffChangesNothing)
{
    Stage stage;
    stage.put("\"0\"", documentOf(3));
    const std::string body = documentOf(500);
    const std::string whole = requestText("PUT", "/v1/bundle", Stage::token, "If-Match: \"1\"\r\n", body);
    for (const std::size_t missing : {std::size_t{1}, body.size() / 2, body.size()}) {
        TlsClient client(stage.port());
        client.send(std::string_view(whole).substr(0, whole.size() - missing));
        client.breakOff();
    }
    stage.server().stop(5s);
    EXPECT_EQ(stage.store().newestDocument(1)->version, 1);
    EXPECT_EQ(stage.store().newestDocument(1)->body, documentOf(3));
}

TEST(ServerLimits, GarbageHarmsNobody)
{
    Stage stage;
    const std::string zeros(100'000, '\0');
    for (const std::string &bytes :
        {std::string("GET / HTTP/1.1\r\n\r\n"), zeros, std::string("\x16\x03\x01\xff\xff") + zeros}) {
        TlsClient client(stage.port());
        client.sendRaw(bytes);
        EXPECT_TRUE(client.isEndedWithin(8s) || bytes.front() == '\x16');
    }
    const std::string token = Stage::token;
    const std::string requests[] = {"\r\n\r\n\r\n\r\nwhat\r\n\r\n", "GET\r\n\r\n", zeros,
        "GET / HTTP/9.9\r\n\r\n", "GET /" + std::string(100'000, 'a') + " HTTP/1.1\r\nHost: a\r\n\r\n",
        requestText("GET", "/v1/ping", token, "A: " + std::string(100'000, 'a') + "\r\n"),
        requestText("PUT", "/v1/bundle", token, "If-Match: \"0\"\r\nContent-Length: -1\r\n"),
        requestText(
            "PUT", "/v1/bundle", token, "If-Match: \"0\"\r\nContent-Length: 99999999999999999999999\r\n"),
        requestText("PUT", "/v1/bundle", token, "If-Match: \"0\"\r\nTransfer-Encoding: chunked\r\n")
            + "zz\r\n"};
    for (const std::string &text : requests) {
        TlsClient client(stage.port());
        client.send(text);
        client.breakOff();
    }
    EXPECT_EQ(stage.get().status, 404);
    EXPECT_EQ(stage.put("\"0\"", documentOf(1)).status, 200);
}
