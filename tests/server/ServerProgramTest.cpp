#include "server/support/ServerProgram.h"

#include "server/StoreFactory.h"
#include "server/support/TestServer.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
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

// From `before` up to the first of `after`.
std::string partOf(const std::string &text, const char *before, const char *after)
{
    const auto start = std::min(text.find(before), text.size());
    return text.substr(start, text.find_first_of(after, start + 1) - start);
}

std::string codeIn(const std::string &text)
{
    return partOf(text, "nimbrelle://", "\n");
}

std::string tokenIn(const std::string &text)
{
    return partOf(text, "&token=", "&").substr(7);
}

// A data folder made by init, with the token that it printed.
class ServerProgramTest : public testing::Test {
protected:
    ServerProgram::Outcome run(const std::vector<std::string> &arguments) const
    {
        return ServerProgram::run(data, arguments);
    }
    std::string failure(const std::vector<std::string> &arguments, int exitCode = 1) const
    {
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << testing::PrintToString(arguments) << outcome.errors;
        EXPECT_THAT(outcome.errors, MatchesRegex("nimbrelle-server: [^\n]+\n"));
        EXPECT_THAT(outcome.out, IsEmpty());
        return outcome.errors;
    }
    static Reply get(const ServerProgram &server, const std::string &token, const std::string &headers = {})
    {
        return TlsClient(server.port()).exchange(requestText("GET", "/v1/bundle", token, headers));
    }
    int put(const ServerProgram &server, std::int64_t over, const std::string &body) const
    {
        const std::string condition = "If-Match: " + entityTag(over) + "\r\n";
        return TlsClient(server.port())
            .exchange(requestText("PUT", "/v1/bundle", token, condition, body))
            .status;
    }

    TemporaryDirectory directory;
    std::filesystem::path data = directory.path() / "data";
    std::string code = codeIn(run({"init", "--url", "https://localhost:9443"}).out);
    std::string token = tokenIn(code);
};

// Writes version after version until the server is gone; remembers what was acknowledged.
struct Writer {
    std::string token;
    std::int64_t acknowledged = 0;
    std::atomic<int> count = 0;

    std::string bodyOf(std::int64_t version) const
    {
        return documentOf(10, token + std::to_string(version), 50'000);
    }
    void run(std::uint16_t port)
    {
        TlsClient client(port);
        const auto write = [&] {
            return client.exchange(requestText("PUT", "/v1/bundle", token,
                "If-Match: " + entityTag(acknowledged) + "\r\n", bodyOf(acknowledged + 1)));
        };
        for (count = 0; write().status == 200; ++count)
            ++acknowledged;
    }
};

} // namespace

TEST_F(ServerProgramTest, InitMakesACodeThatCanBePrintedAgain)
{
    EXPECT_THAT(code,
        MatchesRegex("nimbrelle://sync\\?server=https://localhost:9443"
                     "&token=[-_A-Za-z0-9]{43}&pin=[0-9a-f]{64}"));
    EXPECT_EQ(codeIn(run({"code"}).out), code);
    EXPECT_THAT(run({"code", "--qr"}).out, HasSubstr("█"));
    EXPECT_THAT(run({"code"}).out, Not(HasSubstr("█")));
    EXPECT_THAT(run({"code", "--url", "https://elsewhere:1"}).out,
        HasSubstr("server=https://elsewhere:1&token=" + token));
    EXPECT_THAT(run({"init"}).errors, HasSubstr("nimbrelle-server code"));
}

TEST_F(ServerProgramTest, WhatInitMakesIsForItsOwnerOnlyAndHoldsNoToken)
{
    using std::filesystem::perms;
    const auto othersMay = [](const auto &path) {
        return std::filesystem::status(path).permissions() & (perms::group_all | perms::others_all);
    };
    EXPECT_EQ(othersMay(data), perms::none);
    for (const auto &file : std::filesystem::directory_iterator(data))
        EXPECT_EQ(othersMay(file.path()), perms::none) << file.path();
    EXPECT_THAT(readFile(data / "notebooks.db"), Not(HasSubstr(token)));
}

TEST_F(ServerProgramTest, InitFinishesWhatIsMissingAndKeepsTheKey)
{
    std::filesystem::remove(data / "token.secret");
    EXPECT_THAT(failure({"code"}), HasSubstr("run init again"));
    const auto again = run({"init"});
    EXPECT_EQ(again.exitCode, 0) << again.errors;
    EXPECT_THAT(again.out, AllOf(HasSubstr("token.secret was made anew"), Not(HasSubstr("server.key"))));
    EXPECT_THAT(failure({"init"}), HasSubstr("set up already"));
    EXPECT_THAT(failure({"code"}), HasSubstr("token revoke"));
    EXPECT_EQ(run({"token", "add", "second"}).exitCode, 0);

    writePrivateFile(data / "notebooks.db", ""); // a first init that was killed
    EXPECT_THAT(failure({"code"}), HasSubstr("nimbrelle-server init"));
    const auto made = run({"init"});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    EXPECT_EQ(partOf(made.out, "&pin=", "\n"), partOf(code, "&pin=", "\n"));
    EXPECT_NE(codeIn(made.out), code);
}

TEST_F(ServerProgramTest, ARevokedNotebookComesBackWithANewToken)
{
    const ServerProgram server(data);
    EXPECT_EQ(put(server, 0, documentOf(7)), 200);
    EXPECT_EQ(run({"token", "revoke", "notebook"}).exitCode, 0);
    EXPECT_EQ(get(server, token).status, 401);
    EXPECT_THAT(run({"token", "list"}).out, AllOf(HasSubstr("notebook  (revoked)"), HasSubstr("7 words")));
    failure({"code", "notebook"});
    const std::string renewed = tokenIn(run({"token", "add", "notebook"}).out);
    EXPECT_NE(renewed, token);
    EXPECT_EQ(get(server, renewed).body, documentOf(7));

    const std::string other = tokenIn(run({"token", "add", "妈妈"}).out);
    EXPECT_EQ(get(server, other).status, 404);
    failure({"token", "add", "妈妈"});
}

TEST_F(ServerProgramTest, RestoreReachesARunningServersDevices)
{
    const ServerProgram server(data);
    put(server, 0, documentOf(90));
    put(server, 1, documentOf(1));
    EXPECT_THAT(run({"history"}).out, HasSubstr("before a third of the words went"));
    EXPECT_THAT(run({"restore", "1"}).out, HasSubstr("as version 3"));
    const Reply reply = get(server, token, "If-None-Match: \"2\"\r\n");
    EXPECT_EQ(reply.header("etag"), "\"3\"");
    EXPECT_EQ(reply.body, documentOf(90));
    failure({"restore", "17"});
}

TEST_F(ServerProgramTest, AQuotaHoldsAtOnceAndPruningMakesRoom)
{
    const ServerProgram server(data);
    put(server, 0, documentOf(90));
    put(server, 1, documentOf(1));
    EXPECT_THAT(run({"quota", "--versions", "2", "--bytes", "1MiB"}).out, HasSubstr("1048576 bytes in 2"));
    EXPECT_THAT(run({"quota", "notebook", "--versions", "1"}).out, HasSubstr("1048576 bytes in 1 versions"));
    EXPECT_EQ(put(server, 2, documentOf(1)), 507);
    EXPECT_EQ(put(server, 2, documentOf(1, "a", 2 << 20)), 507);
    EXPECT_THAT(run({"prune", "--keep", "1"}).out, HasSubstr("0 of 2 versions"));
    EXPECT_THAT(run({"prune", "--keep", "1", "--before-loss", "--dry-run"}).out, HasSubstr("1 of 2"));
    run({"token", "add", "second"});
    failure({"prune"}, 2);
    EXPECT_THAT(run({"prune", "--all", "--keep", "1", "--before-loss", "--older-than", "1"}).out,
        HasSubstr("notebook: 0 of 2"));
    EXPECT_THAT(run({"prune", "--all", "--keep", "1", "--before-loss"}).out, HasSubstr("notebook: 1 of 2"));
    EXPECT_EQ(put(server, 2, documentOf(1)), 200);
    EXPECT_THAT(
        run({"quota", "notebook", "--bytes", "0"}).out, HasSubstr("any number of bytes in 1 versions"));
    EXPECT_EQ(put(server, 3, documentOf(1, "a", 2 << 20)), 200);
    EXPECT_THAT(run({"quota", "notebook", "--default"}).out, HasSubstr("1048576 bytes in 2 versions"));
    EXPECT_EQ(put(server, 4, documentOf(1, "a", 2 << 20)), 507);
    EXPECT_THAT(run({"history", "notebook"}).out, Not(HasSubstr("words went")));
}

TEST_F(ServerProgramTest, AMoveCanBeUndone)
{
    const ServerProgram server(data);
    // On a port in use, so that it ends in any case.
    const std::vector<std::string> serve{
        "serve", "--bind", "127.0.0.1", "--port", std::to_string(server.port())};
    EXPECT_THAT(failure({"move", data, data / "notebooks.db"}), HasSubstr("the same one"));
    EXPECT_EQ(put(server, 0, documentOf(3)), 200);
    const auto other = directory.path() / "other";
    EXPECT_THAT(failure({"move", data, other}, 2), HasSubstr("mkdir -m 700"));
    std::filesystem::create_directory(other);
    ::chmod(other.c_str(), 0750);
    EXPECT_THAT(failure({"move", data, other}), HasSubstr("chmod 700"));
    ::chmod(other.c_str(), 0700);
    EXPECT_EQ(run({"move", data, other}).exitCode, 0);
    EXPECT_EQ(put(server, 1, documentOf(4)), 500);
    EXPECT_THAT(failure(serve), HasSubstr("--store"));
    EXPECT_THAT(failure({"move", other, data}), HasSubstr("was itself moved"));
    EXPECT_THAT(run({"move", "--undo", data}).out, HasSubstr("takes changes again"));
    EXPECT_EQ(put(server, 1, documentOf(4)), 200);

    openStore(DataDirectory(data))->setState(StoreState::moving);
    EXPECT_THAT(failure(serve), HasSubstr("--undo"));
    failure({"move", data, "postgresql:///none?host=" + directory.path().string()});
    EXPECT_EQ(put(server, 2, documentOf(5)), 200);
}

TEST_F(ServerProgramTest, KilledUnderLoadItLosesNothingAcknowledged)
{
    const std::string second = tokenIn(run({"token", "add", "second"}).out);
    Writer writers[] = {{.token = token}, {.token = second}};
    for (int round = 0; round < 4; ++round) {
        ServerProgram server(data);
        std::vector<std::jthread> threads;
        for (Writer &writer : writers) {
            // What was on its way when the server died may have arrived.
            const Reply reply = get(server, writer.token);
            const std::int64_t stored = reply.status == 200 ? std::stoll(reply.header("etag").substr(1)) : 0;
            ASSERT_GE(stored, writer.acknowledged);
            ASSERT_LE(stored, writer.acknowledged + 1);
            EXPECT_EQ(reply.status == 200 ? reply.body : "", stored > 0 ? writer.bodyOf(stored) : "");
            writer.acknowledged = stored;
            writer.count = 0;
            threads.emplace_back([&] { writer.run(server.port()); });
        }
        EXPECT_TRUE(eventually([&] { return writers[0].count >= 3 + 5 * round && writers[1].count >= 3; }));
        server.end(SIGKILL);
    }
    openStore(DataDirectory(data))->check();
}

TEST_F(ServerProgramTest, EndsCleanlyWhenTold)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        ServerProgram server(data);
        TlsClient idle(server.port());
        idle.handshake();
        const auto outcome = server.end(signal);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.errors, HasSubstr("ended"));
        EXPECT_TRUE(idle.isClosedWithin(std::chrono::seconds(5)));
        EXPECT_FALSE(std::filesystem::exists(data / "notebooks.db-wal"));
    }
}

TEST_F(ServerProgramTest, HelpIsNoErrorAndBadUsageIsOneLineAndExitCodeTwo)
{
    using Lines = std::vector<std::vector<std::string>>;
    for (const auto &arguments : Lines{{"--help"}, {"serve", "--help"}, {"token", "add", "--help"}}) {
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.out, HasSubstr("Usage: nimbrelle-server"));
    }
    for (const auto &arguments : Lines{{}, {"unknown"}, {"--unknown"}, {"serve", "--port", "x"},
             {"serve", "--port", "70000"}, {"serve", "--max-body", "12zz"}, {"serve", "--head-time", "0"},
             {"restore"}, {"restore", "x"}, {"token"}, {"token", "add"}, {"token", "add", "two words"},
             {"code", "--url", "http://a"}, {"init", "--url", "https://a/b"}, {"init", "extra"},
             {"quota", "--bytes", "-1"}, {"quota", "--default"}, {"prune", "--keep", "0"}, {"move", "x"},
             {"move", "--undo"}, {"move", "--undo", "x", "y"}, {"code", "--store", "mysql://a"}})
        failure(arguments, 2);
}

TEST_F(ServerProgramTest, WhatKeepsItFromStartingSaysWhatToDo)
{
    // On a port in use: whatever is overlooked ends here, and does not serve for ever.
    const ServerProgram server(data);
    const std::vector<std::string> serve{
        "serve", "--bind", "127.0.0.1", "--port", std::to_string(server.port())};
    EXPECT_THAT(failure(serve), HasSubstr("another port with --port"));
    EXPECT_THAT(failure({"serve", "--bind", "203.0.113.9", "--port", "0"}), HasSubstr("--bind"));

    // 512 connections and the 64 that may linger leave nothing for the database.
    const std::string limited = "ulimit -n 580; exec " NIMBRELLE_SERVER_PROGRAM " serve --data "
        + data.string() + " --bind 127.0.0.1 --port " + serve.back() + " 2>&1";
    std::FILE *pipe = ::popen(limited.c_str(), "r");
    std::array<char, 400> answer{};
    EXPECT_GT(std::fread(answer.data(), 1, answer.size() - 1, pipe), 0U);
    ::pclose(pipe);
    EXPECT_THAT(answer.data(), HasSubstr("only 580 files may be open"));

    const auto key = data / "server.key";
    ::chmod(key.c_str(), 0640);
    EXPECT_THAT(failure(serve), HasSubstr("chmod 600"));
    ::chmod(key.c_str(), 0600);
    ::chmod(data.c_str(), 0710);
    EXPECT_THAT(failure(serve), HasSubstr("chmod 700"));
    ::chmod(data.c_str(), 0700);

    const std::string bytes = readFile(key);
    writePrivateFile(key, makeIdentity("localhost").key);
    EXPECT_THAT(failure(serve), HasSubstr("do not belong together"));
    writePrivateFile(key, bytes.substr(0, 100));
    EXPECT_THAT(failure(serve), HasSubstr("server.key is damaged"));
    writePrivateFile(key, bytes);

    std::fstream(data / "notebooks.db", std::ios::in | std::ios::out).seekp(20'000)
        << std::string(40'000, 'x');
    EXPECT_THAT(failure(serve), HasSubstr("in database main")); // which only the check at the start says
    writePrivateFile(data / "notebooks.db", "nonsense, and no database either");
    EXPECT_THAT(failure(serve), HasSubstr("from a backup"));
    std::filesystem::remove(data / "notebooks.db");
    EXPECT_THAT(failure({"token", "list"}), HasSubstr("nimbrelle-server init"));
    EXPECT_THAT(failure(serve), HasSubstr("nimbrelle-server init"));
    std::filesystem::remove_all(data);
    EXPECT_THAT(failure(serve), HasSubstr("nimbrelle-server init"));
}
