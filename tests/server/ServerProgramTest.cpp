#include "server/support/ServerProgram.h"

#include "server/Crypto.h"
#include "server/StoreFactory.h"
#include "server/support/Stage.h"

#include <atomic>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>

using namespace nimbrelle::server;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

namespace {

// A data folder made by init, with the token that it printed.
class ServerProgramTest : public testing::Test {
protected:
    ServerProgramTest()
    {
        const auto made = run({"init", "--url", "https://localhost:9443"});
        EXPECT_EQ(made.exitCode, 0) << made.errors;
        code = codeIn(made.out);
        token = tokenIn(code);
    }

    ServerProgram::Outcome run(const std::vector<std::string> &arguments) const
    {
        return ServerProgram::run(data, arguments);
    }
    static std::string codeIn(const std::string &text)
    {
        const auto start = text.find("nimbrelle://");
        return start == std::string::npos ? "" : text.substr(start, text.find('\n', start) - start);
    }
    static std::string tokenIn(const std::string &code)
    {
        const auto start = code.find("&token=") + 7;
        return code.substr(start, code.find('&', start) - start);
    }
    static Reply ask(std::uint16_t port, const std::string &request)
    {
        TlsClient client(port);
        return client.exchange(request).value_or(Reply{});
    }
    static Reply put(std::uint16_t port, const std::string &with, std::int64_t over, const std::string &body)
    {
        return ask(
            port, requestText("PUT", "/v1/bundle", with, "If-Match: " + entityTag(over) + "\r\n", body));
    }

    ScratchFolder scratch;
    std::filesystem::path data = scratch.path() / "data";
    std::string code;
    std::string token;
};

// Writes version after version until the server is gone; remembers what was acknowledged.
struct Writer {
    std::uint16_t port;
    std::string token;
    std::int64_t acknowledged = 0;
    std::atomic<int> count = 0;

    std::string bodyOf(std::int64_t version) const
    {
        return documentOf(10, token + std::to_string(version), 50'000);
    }
    void run()
    {
        TlsClient client(port);
        for (;;) {
            const auto reply = client.exchange(requestText("PUT", "/v1/bundle", token,
                "If-Match: " + entityTag(acknowledged) + "\r\n", bodyOf(acknowledged + 1)));
            if (!reply || reply->status != 200)
                return;
            ++acknowledged;
            ++count;
        }
    }
};

} // namespace

TEST_F(ServerProgramTest, InitMakesACodeThatCanBePrintedAgain)
{
    EXPECT_THAT(code,
        MatchesRegex("nimbrelle://sync\\?server=https://localhost:9443&token=[-_A-Za-z0-9]+&pin=[0-9a-f]+"));
    EXPECT_EQ(codeIn(run({"code"}).out), code);
    EXPECT_THAT(run({"code", "--qr"}).out, HasSubstr("█"));
    EXPECT_THAT(run({"code"}).out, Not(HasSubstr("█")));
    EXPECT_THAT(run({"code", "--url", "https://elsewhere:1"}).out,
        HasSubstr("server=https://elsewhere:1&token=" + token));
    const auto again = run({"init"});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(again.errors, HasSubstr("nimbrelle-server code"));
}

TEST_F(ServerProgramTest, InitFinishesWhatIsMissingAndKeepsTheKey)
{
    const auto pinIn = [](const std::string &text) { return text.substr(text.find("&pin=")); };
    std::filesystem::remove(data / "token.secret");
    EXPECT_THAT(run({"code"}).errors, HasSubstr("run init again"));
    run({"init"});
    EXPECT_THAT(run({"code"}).errors, HasSubstr("token revoke"));
    EXPECT_EQ(run({"token", "add", "second"}).exitCode, 0);

    writePrivateFile(data / "notebooks.db", ""); // a first init that was killed
    const auto made = run({"init"});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    EXPECT_EQ(pinIn(codeIn(made.out)), pinIn(code));
    EXPECT_NE(codeIn(made.out), code);
}

TEST_F(ServerProgramTest, TheDatabaseHoldsNoToken)
{
    const std::string bytes = readFile(data / "notebooks.db");
    EXPECT_EQ(bytes.find(token), std::string::npos);
    EXPECT_NE(bytes.find(bytesOf(sha256(token))), std::string::npos);
}

TEST_F(ServerProgramTest, ARevokedNotebookComesBackWithANewToken)
{
    const ServerProgram server(data);
    EXPECT_EQ(put(server.port(), token, 0, documentOf(7)).status, 200);
    EXPECT_EQ(run({"token", "revoke", "notebook"}).exitCode, 0);
    EXPECT_EQ(ask(server.port(), requestText("GET", "/v1/bundle", token)).status, 401);
    EXPECT_THAT(run({"token", "list"}).out, AllOf(HasSubstr("notebook  (revoked)"), HasSubstr("7 words")));
    EXPECT_EQ(run({"code", "notebook"}).exitCode, 1);
    const std::string renewed = tokenIn(codeIn(run({"token", "add", "notebook"}).out));
    EXPECT_NE(renewed, token);
    EXPECT_EQ(ask(server.port(), requestText("GET", "/v1/bundle", renewed)).body, documentOf(7));

    const std::string other = tokenIn(codeIn(run({"token", "add", "妈妈"}).out));
    EXPECT_EQ(ask(server.port(), requestText("GET", "/v1/bundle", other)).status, 404);
    EXPECT_EQ(run({"token", "add", "妈妈"}).exitCode, 1);
}

TEST_F(ServerProgramTest, RestoreReachesARunningServersDevices)
{
    const ServerProgram server(data);
    put(server.port(), token, 0, documentOf(90));
    put(server.port(), token, 1, documentOf(1));
    EXPECT_THAT(run({"history"}).out, HasSubstr("before a third of the words went"));
    EXPECT_THAT(run({"restore", "1"}).out, HasSubstr("as version 3"));
    const Reply reply =
        ask(server.port(), requestText("GET", "/v1/bundle", token, "If-None-Match: \"2\"\r\n"));
    EXPECT_EQ(reply.header("etag"), "\"3\"");
    EXPECT_EQ(reply.body, documentOf(90));
    EXPECT_EQ(run({"restore", "17"}).exitCode, 1);
}

TEST_F(ServerProgramTest, KilledUnderLoadItLosesNothingAcknowledged)
{
    const std::string second = tokenIn(codeIn(run({"token", "add", "second"}).out));
    Writer writers[] = {{0, token}, {0, second}};
    for (int round = 0; round < 4; ++round) {
        ServerProgram server(data);
        std::vector<std::jthread> threads;
        for (Writer &writer : writers) {
            // What was on its way when the server died may have arrived.
            const Reply reply = ask(server.port(), requestText("GET", "/v1/bundle", writer.token));
            const std::int64_t stored = reply.status == 200 ? std::stoll(reply.header("etag").substr(1)) : 0;
            ASSERT_GE(stored, writer.acknowledged);
            ASSERT_LE(stored, writer.acknowledged + 1);
            EXPECT_EQ(reply.status == 200 ? reply.body : "", stored > 0 ? writer.bodyOf(stored) : "");
            writer.acknowledged = stored;
            writer.port = server.port();
            writer.count = 0;
            threads.emplace_back([&writer] { writer.run(); });
        }
        while (writers[0].count < 3 + 5 * round || writers[1].count < 3)
            std::this_thread::yield();
        server.end(SIGKILL);
    }
    openStore(DataDirectory(data))->check();
}

TEST_F(ServerProgramTest, EndsCleanlyWhenTold)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        ServerProgram server(data);
        TlsClient idle(server.port());
        idle.shakeHands();
        const auto outcome = server.end(signal);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.errors, HasSubstr("ended"));
        EXPECT_TRUE(idle.isEndedWithin(std::chrono::seconds(5)));
        EXPECT_FALSE(std::filesystem::exists(data / "notebooks.db-wal"));
    }
}

TEST_F(ServerProgramTest, BadUsageIsOneLineAndExitCodeTwo)
{
    const std::vector<std::vector<std::string>> wrong{{}, {"dance"}, {"--dance"}, {"serve", "--port", "x"},
        {"serve", "--port", "70000"}, {"serve", "--max-body", "12zz"}, {"serve", "--head-time", "0"},
        {"restore"}, {"restore", "x"}, {"token"}, {"token", "add"}, {"token", "add", "two words"},
        {"code", "--url", "http://a"}, {"init", "--url", "https://a/b"}, {"init", "extra"}};
    for (const auto &arguments : wrong) {
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << testing::PrintToString(arguments) << outcome.errors;
        EXPECT_THAT(outcome.errors, MatchesRegex("nimbrelle-server: [^\n]+\n"))
            << testing::PrintToString(arguments);
        EXPECT_THAT(outcome.out, IsEmpty());
    }
}

TEST_F(ServerProgramTest, EachCommandExplainsItself)
{
    const std::vector<std::vector<std::string>> commands{{}, {"init"}, {"serve"}, {"token"}, {"token", "add"},
        {"token", "list"}, {"token", "revoke"}, {"code"}, {"history"}, {"restore"}};
    for (auto arguments : commands) {
        arguments.push_back("--help");
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.out, HasSubstr("Usage: nimbrelle-server"));
    }
}

TEST_F(ServerProgramTest, WhatKeepsItFromStartingSaysWhatToDo)
{
    const auto complaint = [&](std::vector<std::string> arguments) {
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 1) << outcome.errors;
        EXPECT_THAT(outcome.errors, MatchesRegex("nimbrelle-server: [^\n]+\n"));
        return outcome.errors;
    };
    {
        const ServerProgram server(data);
        EXPECT_THAT(complaint({"serve", "--bind", "127.0.0.1", "--port", std::to_string(server.port())}),
            HasSubstr("another port with --port"));
    }
    EXPECT_THAT(complaint({"serve", "--bind", "203.0.113.9", "--port", "0"}), HasSubstr("--bind"));

    ::chmod((data / "server.key").c_str(), 0644);
    EXPECT_THAT(complaint({"serve"}), HasSubstr("chmod 600"));
    ::chmod((data / "server.key").c_str(), 0600);

    const std::string key = readFile(data / "server.key");
    writePrivateFile(data / "server.key", "nonsense");
    EXPECT_THAT(complaint({"serve"}), HasSubstr("from a backup"));
    writePrivateFile(data / "server.key", key);

    writePrivateFile(data / "notebooks.db", "nonsense, and no database either");
    EXPECT_THAT(complaint({"serve"}), HasSubstr("from a backup"));
    std::filesystem::remove(data / "notebooks.db");
    EXPECT_THAT(complaint({"token", "list"}), HasSubstr("nimbrelle-server init"));
    EXPECT_THAT(complaint({"serve"}), HasSubstr("nimbrelle-server init"));
}
