// The sync server on PostgreSQL beside pgbench, which runs the same statements on the same database in the
// same run. That two processes carry twice as much as one can only be seen where cores are to spare; what is
// measured instead is whether a request costs a process more when another one serves the same database.

#include "Ratios.h"
#include "ServerRequests.h"
#include "server/Crypto.h"
#include "server/PostgresStatements.h"
#include "server/StoreFactory.h"
#include "server/support/PostgresServer.h"
#include "server/support/ServerProgram.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <thread>

using namespace nimbrelle::bench;
using namespace nimbrelle::server;

namespace {

class Stage {
public:
    Stage()
    {
        const auto made = ServerProgram::run(
            folder.path() / "data", {"init", "--url", "https://localhost", "--store", url});
        const auto start = made.out.find("&token=") + 7;
        token = made.out.substr(start, made.out.find('&', start) - start);
        for (auto &server : servers)
            server = std::make_unique<ServerProgram>(
                folder.path() / "data", std::vector<std::string>{"--no-access-log", "--store", url});
    }

    PostgresServer postgres;
    TemporaryDirectory folder;
    std::string url = postgres.newDatabase();
    std::string token;
    std::array<std::unique_ptr<ServerProgram>, 2> servers;
    std::string body = sampleBundle();
};

std::unique_ptr<Stage> stage;

std::string getText(const std::string &headers)
{
    return requestText("GET", "/v1/bundle", stage->token, headers);
}

std::string putText(std::int64_t over)
{
    return requestText(
        "PUT", "/v1/bundle", stage->token, "If-Match: \"" + std::to_string(over) + "\"\r\n", stage->body);
}

// A statement that the server runs, with what pgbench gives for its values.
std::string bound(const PostgresStatement &statement, const std::vector<std::string> &values)
{
    std::string sql = statement.sql;
    for (std::size_t index = values.size(); index > 0; --index) {
        const std::string parameter = '$' + std::to_string(index);
        for (auto at = sql.find(parameter); at != std::string::npos; at = sql.find(parameter, at))
            sql.replace(at, parameter.size(), values[index - 1]);
    }
    return sql;
}

std::string selectNotebook()
{
    return bound(Sql::ofToken, {"decode(:selector, 'hex')"}) + ";\n";
}

std::string putScript()
{
    return "\\if :begun = 0\nSELECT repeat('x', " + std::to_string(stage->body.size())
        + ") AS body \\gset\n\\set begun 1\n\\endif\n" + selectNotebook() + bound(Sql::settings, {}) + ";\n"
        + bound(Sql::version, {"1"}) + " \\gset\n" + bound(Sql::history, {"1"}) + ";\n"
        + bound(Sql::append,
            {"1", ":version", "extract(epoch FROM now())::bigint", "2000", ":body", "0",
                "(:version - 20)::text"})
        + ";\n";
}

// The seconds that pgbench gives for one run of the script.
double pgbenchSeconds(const std::string &script, int count)
{
    const auto file = stage->folder.path() / "script.sql";
    std::ofstream(file) << script;
    const std::string selector = hexText(selectorOf(sha256(stage->token)));
    const std::string command = PostgresServer::program("pgbench").string()
        + " -n -M prepared -D begun=0 -D selector=" + selector + " -t " + std::to_string(count) + " -f "
        + file.string() + " '" + stage->url + "' 2>&1";
    std::FILE *pipe = ::popen(command.c_str(), "r");
    std::string text;
    std::array<char, 4096> piece{};
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), pipe))
        text.append(piece.data(), size);
    ::pclose(pipe);
    constexpr std::string_view before = "latency average = ";
    const auto at = text.find(before);
    if (at == std::string::npos || text.find("failed transactions: 0 ") == std::string::npos)
        throw std::runtime_error("pgbench: " + text);
    return std::stod(text.substr(at + before.size())) / 1000;
}

void conditionalGet(benchmark::State &state)
{
    const auto client = connected(stage->servers[0]->port());
    const std::string text =
        getText("If-None-Match: \"" + std::to_string(currentVersion(*client, stage->token)) + "\"\r\n");
    for (auto _ : state)
        ask(*client, text, 304);
}

// The same way without a database, so far as there is one.
void requestWithoutStore(benchmark::State &state)
{
    const auto client = connected(stage->servers[0]->port());
    const std::string text = requestText("GET", "/v1/other", stage->token, "If-None-Match: \"1\"\r\n");
    for (auto _ : state)
        ask(*client, text, 404);
}

// All of a write but the write.
void refusedPut(benchmark::State &state)
{
    const auto client = connected(stage->servers[0]->port());
    for (auto _ : state)
        ask(*client, putText(0), 412);
}

void pgbenchGet(benchmark::State &state)
{
    for (auto _ : state)
        state.SetIterationTime(pgbenchSeconds(selectNotebook(), 2'000));
}

void putOneMegabyte(benchmark::State &state)
{
    const auto client = connected(stage->servers[0]->port());
    std::int64_t version = currentVersion(*client, stage->token);
    for (auto _ : state)
        ask(*client, putText(version++), 200);
}

void pgbenchPut(benchmark::State &state)
{
    for (auto _ : state)
        state.SetIterationTime(pgbenchSeconds(putScript(), 40));
}

double processorSecondsOfAll()
{
    return processorSeconds(stage->servers[0]->process()) + processorSeconds(stage->servers[1]->process());
}

void fourClients(benchmark::State &state, std::size_t processes)
{
    constexpr int perClient = 300;
    const std::string text = getText("If-None-Match: \""
        + std::to_string(currentVersion(*connected(stage->servers[0]->port()), stage->token)) + "\"\r\n");
    for (auto _ : state) {
        std::vector<std::unique_ptr<TlsClient>> clients;
        for (std::size_t client = 0; client < 4; ++client) {
            clients.push_back(connected(stage->servers[client % processes]->port()));
            ask(*clients.back(), text, 304);
        }
        const double before = processorSecondsOfAll();
        std::vector<std::jthread> threads;
        threads.reserve(clients.size());
        for (auto &client : clients)
            threads.emplace_back([&] {
                for (int request = 0; request < perClient; ++request)
                    client->exchange(text);
            });
        threads.clear();
        state.SetIterationTime((processorSecondsOfAll() - before) / (4 * perClient));
    }
}

constexpr int repetitions = 5;

BENCHMARK(conditionalGet)->Iterations(2'000)->UseRealTime()->Repetitions(repetitions);
BENCHMARK(requestWithoutStore)->Iterations(2'000)->UseRealTime()->Repetitions(repetitions);
BENCHMARK(refusedPut)->Iterations(40)->UseRealTime()->Repetitions(repetitions);
BENCHMARK(pgbenchGet)->Iterations(1)->UseManualTime()->Repetitions(repetitions);
BENCHMARK(putOneMegabyte)->Iterations(40)->UseRealTime()->Repetitions(repetitions);
BENCHMARK(pgbenchPut)->Iterations(1)->UseManualTime()->Repetitions(repetitions);
BENCHMARK_CAPTURE(fourClients, oneProcess, 1)->Iterations(3)->UseManualTime()->Repetitions(repetitions);
BENCHMARK_CAPTURE(fourClients, twoProcesses, 2)->Iterations(3)->UseManualTime()->Repetitions(repetitions);

int measure(int argc, char **argv)
{
    const auto client = connected(stage->servers[0]->port());
    for (int version = 0; version < 25; ++version) // as many as are kept, and more
        ask(*client, putText(version), 200);
    return runWithRatios(argc, argv,
        {
            {"conditional GET / pgbench", "conditionalGet/iterations:2000/repeats:5/real_time",
                {"pgbenchGet/iterations:1/repeats:5/manual_time"}, 1.5},
            {"conditional GET / pgbench, and TLS and HTTP",
                "conditionalGet/iterations:2000/repeats:5/real_time",
                {"pgbenchGet/iterations:1/repeats:5/manual_time",
                    "requestWithoutStore/iterations:2000/repeats:5/real_time"},
                1.5},
            {"durable PUT of 1 MB / pgbench", "putOneMegabyte/iterations:40/repeats:5/real_time",
                {"pgbenchPut/iterations:1/repeats:5/manual_time"}, 1.5},
            {"processor time of a request: two processes / one",
                "fourClients/twoProcesses/iterations:3/repeats:5/manual_time",
                {"fourClients/oneProcess/iterations:3/repeats:5/manual_time"}, 1 / 0.85},
        });
}

} // namespace

int main(int argc, char **argv)
{
    try {
        stage = std::make_unique<Stage>();
        const int code = measure(argc, argv);
        stage.reset();
        return code;
    } catch (const std::exception &error) {
        stage.reset(); // ends the servers
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
