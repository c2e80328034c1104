#include "server/Conditions.h"
#include "server/StoreFactory.h"
#include "server/support/PostgresServer.h"
#include "server/support/ServerProgram.h"

#include <array>
#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <map>
#include <thread>

using namespace nimbrelle::server;
using testing::HasSubstr;

namespace {

std::string tokenIn(const std::string &text)
{
    const auto start = text.find("&token=") + 7;
    return text.substr(start, text.find('&', start) - start);
}

std::int64_t versionOf(const Reply &reply)
{
    const std::string tag = reply.header("etag");
    return tag.empty() ? 0 : std::stoll(tag.substr(1));
}

// A data folder and a database made by init, with the token that it printed.
class PostgresProgramTest : public testing::Test {
protected:
    ServerProgram::Outcome run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--store", url});
        return ServerProgram::run(data, arguments);
    }
    std::unique_ptr<ServerProgram> serve() const
    {
        return std::make_unique<ServerProgram>(data, std::vector<std::string>{"--store", url});
    }
    Reply get(const ServerProgram &server, const std::string &headers = {}) const
    {
        return TlsClient(server.port()).exchange(requestText("GET", "/v1/bundle", token, headers));
    }
    Reply put(const ServerProgram &server, std::int64_t over, const std::string &body) const
    {
        const std::string condition = "If-Match: " + entityTag(over) + "\r\n";
        return TlsClient(server.port()).exchange(requestText("PUT", "/v1/bundle", token, condition, body));
    }

    PostgresServer &postgres = PostgresServer::shared();
    TemporaryDirectory directory;
    std::filesystem::path data = directory.path() / "data";
    std::string url = postgres.newDatabase();
    std::string token = tokenIn(run({"init", "--url", "https://localhost:9443"}).out);
};

// Writers that go on whatever happens to the servers, and know what was acknowledged to whom.
class Writers {
public:
    Writers(std::string token, int count) : m_token(std::move(token))
    {
        for (int writer = 0; writer < count; ++writer)
            m_threads.emplace_back([this, writer](const std::stop_token &stop) { work(writer, stop); });
    }

    void setPort(std::size_t server, std::uint16_t port) { m_ports[server] = port; }
    bool writeMore(int versions)
    {
        const int wanted = m_acknowledged + versions;
        return eventually([&] { return m_acknowledged >= wanted; });
    }
    std::map<std::int64_t, std::vector<int>> end()
    {
        m_threads.clear();
        return m_winners;
    }
    // Every second version stands before a loss, and so is kept for good.
    static std::string bodyOf(int writer, std::int64_t version)
    {
        return documentOf(version % 2 == 1 ? 30 : 1, std::to_string(writer), 2'000);
    }

private:
    void work(int writer, const std::stop_token &stop)
    {
        while (!stop.stop_requested()) {
            try {
                TlsClient client(m_ports[static_cast<std::size_t>(writer) % m_ports.size()]);
                while (!stop.stop_requested() && writeOnce(writer, client)) { }
            } catch (const std::runtime_error &) {
                std::this_thread::yield(); // this server is gone for now
            }
        }
    }
    bool writeOnce(int writer, TlsClient &client)
    {
        const Reply read = client.exchange(requestText("GET", "/v1/bundle", m_token));
        if (read.status != 200 && read.status != 404)
            return read.status != 0;
        const std::int64_t over = versionOf(read);
        const Reply written = client.exchange(requestText(
            "PUT", "/v1/bundle", m_token, "If-Match: " + entityTag(over) + "\r\n", bodyOf(writer, over + 1)));
        if (written.status == 200) {
            const std::lock_guard lock(m_mutex);
            m_winners[versionOf(written)].push_back(writer);
            ++m_acknowledged;
        }
        return written.status != 0;
    }

    const std::string m_token;
    std::array<std::atomic<std::uint16_t>, 2> m_ports{};
    std::atomic<int> m_acknowledged = 0;
    std::mutex m_mutex;
    std::map<std::int64_t, std::vector<int>> m_winners;
    std::vector<std::jthread> m_threads;
};

} // namespace

TEST_F(PostgresProgramTest, TwoServersOnOneDatabaseAnswerAlike)
{
    const auto first = serve();
    const auto second = serve();
    EXPECT_EQ(put(*first, 0, documentOf(90)).status, 200);
    EXPECT_EQ(get(*second).body, documentOf(90));
    EXPECT_EQ(put(*second, 1, documentOf(1)).status, 200);
    EXPECT_EQ(put(*first, 1, documentOf(2)).status, 412);
    EXPECT_EQ(get(*first, "If-None-Match: \"2\"\r\n").status, 304);
    EXPECT_EQ(get(*first).body, documentOf(1));

    EXPECT_THAT(run({"history"}).out, HasSubstr("before a third of the words went"));
    EXPECT_THAT(run({"restore", "1"}).out, HasSubstr("as version 3"));
    EXPECT_EQ(get(*second).body, documentOf(90));
    EXPECT_EQ(run({"token", "revoke", "notebook"}).exitCode, 0);
    EXPECT_EQ(get(*first).status, 401);
    EXPECT_THAT(run({"token", "list"}).out, HasSubstr("notebook  (revoked)"));
    EXPECT_NE(tokenIn(run({"token", "add", "notebook"}).out), token);
    EXPECT_THAT(run({"token", "add", "妈妈"}).out, HasSubstr("妈妈"));
    EXPECT_FALSE(std::filesystem::exists(data / "notebooks.db"));
}

TEST_F(PostgresProgramTest, AQuotaHoldsForTwoServersAndPruningMakesRoom)
{
    const auto first = serve();
    const auto second = serve();
    put(*first, 0, documentOf(90));
    put(*second, 1, documentOf(1));
    EXPECT_THAT(run({"quota", "--versions", "3"}).out, HasSubstr("in 3 versions"));
    EXPECT_EQ(put(*first, 2, documentOf(1)).status, 200);
    EXPECT_EQ(put(*second, 3, documentOf(1)).status, 200);
    EXPECT_THAT(run({"quota", "notebook", "--versions", "1"}).out, HasSubstr("in 1 versions"));
    EXPECT_EQ(put(*first, 4, documentOf(1)).status, 507);
    EXPECT_EQ(get(*second).header("etag"), entityTag(4));
    EXPECT_THAT(run({"prune", "--keep", "1", "--before-loss"}).out, HasSubstr("notebook: 2 of 3"));
    EXPECT_EQ(put(*second, 4, documentOf(1)).status, 200);
}

TEST_F(PostgresProgramTest, WhileTheDatabaseIsAwayRequestsAreToldToWait)
{
    const auto server = serve();
    EXPECT_EQ(put(*server, 0, documentOf(7)).status, 200);
    postgres.kill();
    for (const Reply &reply : {get(*server), put(*server, 1, documentOf(8))}) {
        EXPECT_EQ(reply.status, 503);
        EXPECT_NE(reply.header("retry-after"), "");
    }
    EXPECT_EQ(run({"token", "list"}).exitCode, 1);
    postgres.start();
    EXPECT_TRUE(eventually([&] { return get(*server).status == 200; }));
    EXPECT_EQ(put(*server, 1, documentOf(8)).status, 200);
}

TEST_F(PostgresProgramTest, KilledOnEitherSideItLosesNothingAcknowledged)
{
    constexpr int versions = 12;
    std::array<std::unique_ptr<ServerProgram>, 2> servers{serve(), serve()};
    Writers writers(token, 24);
    const auto showPorts = [&] {
        for (std::size_t index = 0; index < servers.size(); ++index)
            writers.setPort(index, servers[index]->port());
    };
    showPorts();
    for (auto &killed : servers) {
        ASSERT_TRUE(writers.writeMore(versions));
        killed->end(SIGKILL);
        ASSERT_TRUE(writers.writeMore(versions));
        killed = serve();
        showPorts();
        postgres.killOneBackend(url); // the database begins anew
        ASSERT_TRUE(writers.writeMore(versions));
        postgres.kill();
        postgres.start();
    }
    ASSERT_TRUE(writers.writeMore(versions));

    const auto winners = writers.end();
    const auto store = openStore(StoreLocation(url));
    store->check();
    const std::int64_t id = store->notebooks().front().id;
    EXPECT_GE(store->version(id), winners.rbegin()->first);
    int compared = 0;
    for (const auto &[version, writer] : winners) {
        EXPECT_EQ(writer.size(), 1U) << version;
        if (const auto document = store->document(id, version)) {
            EXPECT_EQ(document->body, Writers::bodyOf(writer.front(), version)) << version;
            ++compared;
        } else {
            EXPECT_EQ(version % 2, 0) << version; // an earlier one, which the history let go
        }
    }
    EXPECT_GT(compared, versions);
}

TEST_F(PostgresProgramTest, MoveTakesAlongWhatARunningServerAcknowledged)
{
    const auto file = directory.path() / "file";
    const std::string fileToken = tokenIn(ServerProgram::run(file, {"init"}).out);
    const ServerProgram server(file);
    Writers writers(fileToken, 4);
    writers.setPort(0, server.port());
    writers.setPort(1, server.port());
    ASSERT_TRUE(writers.writeMore(10));
    const std::string target = postgres.newDatabase();
    const auto moved = ServerProgram::run(file, {"move", file.string(), target});
    EXPECT_EQ(moved.exitCode, 0) << moved.errors;
    EXPECT_THAT(moved.out, HasSubstr("1 notebooks"));
    const auto winners = writers.end();
    EXPECT_EQ(openStore(StoreLocation(target))->notebooks().front().version, winners.rbegin()->first);
    EXPECT_THAT(ServerProgram::run(file, {"serve", "--port", "0"}).errors, HasSubstr("--store"));
    EXPECT_EQ(tokenIn(ServerProgram::run(file, {"code", "--store", target}).out), fileToken);
}
