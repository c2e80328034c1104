// The sync server beside nginx and beside the bare disk. How many requests one core carries follows from the
// processor time that the server's process takes for one, which a busy machine changes little; so that time
// is what the two are compared by. The rate as a client sees it stands beside it.

#include "Nginx.h"
#include "Ratios.h"
#include "ServerRequests.h"
#include "server/DataDirectory.h"
#include "server/support/ServerProgram.h"

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <unistd.h>

using namespace nimbrelle::bench;
using namespace nimbrelle::server;

namespace {

class Servers {
public:
    Servers()
    {
        std::string name = (std::filesystem::temp_directory_path() / "nimbrelle-bench-XXXXXX").string();
        if (!::mkdtemp(name.data()))
            throw std::runtime_error("no folder for the benchmark");
        folder = name;
        const auto made = ServerProgram::run(data(), {"init", "--url", "https://localhost"});
        const auto start = made.out.find("&token=") + 7;
        token = made.out.substr(start, made.out.find('&', start) - start);
        ours = std::make_unique<ServerProgram>(data(), std::vector<std::string>{"--no-access-log"});
        startNginx();
    }
    Servers(const Servers &) = delete;
    Servers &operator=(const Servers &) = delete;
    ~Servers()
    {
        ours.reset();
        nginx.reset();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    std::filesystem::path data() const { return folder / "data"; }
    const std::string &body() const { return m_body; }

    std::filesystem::path folder;
    std::string token;
    std::unique_ptr<ServerProgram> ours;
    std::unique_ptr<Nginx> nginx; ///< null where it isn't installed

private:
    void startNginx()
    {
        if (!Nginx::isInstalled()) {
            std::printf(
                "nginx is not installed (Debian: nginx-light): the comparison with it is left out.\n");
            return;
        }
        for (const char *file : {"server.key", "server.crt"})
            std::filesystem::copy(data() / file, folder / file);
        writePrivateFile(folder / "bundle", m_body);
        nginx = std::make_unique<Nginx>(folder, 18'431);
    }

    std::string m_body = sampleBundle();
};

std::unique_ptr<Servers> servers;

std::string getText(const std::string &headers = {})
{
    return requestText("GET", "/v1/bundle", servers->token, headers);
}

std::string putText(std::int64_t over)
{
    return requestText("PUT", "/v1/bundle", servers->token, "If-Match: \"" + std::to_string(over) + "\"\r\n",
        servers->body());
}

void measureRequests(benchmark::State &state, std::uint16_t port, pid_t process, bool conditional)
{
    const auto client = connected(port);
    const auto first = ask(*client, getText(), 200);
    const std::string text = getText(conditional ? "If-None-Match: " + first.header("etag") + "\r\n" : "");
    const int batch = conditional ? 200 : 20;
    std::int64_t requests = 0;
    for (auto _ : state) {
        const double before = processorSeconds(process);
        for (int index = 0; index < batch; ++index)
            ask(*client, text, conditional ? 304 : 200);
        state.SetIterationTime((processorSeconds(process) - before) / batch);
        requests += batch;
    }
    state.counters["wall/request"] = benchmark::Counter(
        static_cast<double>(requests), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void ours(benchmark::State &state, bool conditional)
{
    measureRequests(state, servers->ours->port(), servers->ours->process(), conditional);
}

void nginx(benchmark::State &state, bool conditional)
{
    if (!servers->nginx)
        return state.SkipWithError("nginx is not installed");
    measureRequests(state, servers->nginx->port(), servers->nginx->process(), conditional);
}

void getOneMegabyte(benchmark::State &state)
{
    const auto client = connected(servers->ours->port());
    for (auto _ : state)
        ask(*client, getText(), 200);
}

void putOneMegabyte(benchmark::State &state)
{
    const auto client = connected(servers->ours->port());
    std::int64_t version = currentVersion(*client, servers->token);
    for (auto _ : state)
        ask(*client, putText(version++), 200);
}

void writeAndFlush(benchmark::State &state)
{
    const auto file = servers->folder / "raw";
    for (auto _ : state) {
        const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (::write(descriptor, servers->body().data(), servers->body().size()) < 0
            || ::fsync(descriptor) != 0)
            state.SkipWithError("the disk refuses");
        ::close(descriptor);
    }
}

constexpr int repetitions = 5;

BENCHMARK_CAPTURE(ours, notModified, true)->Iterations(50)->UseManualTime()->Repetitions(repetitions);
BENCHMARK_CAPTURE(nginx, notModified, true)->Iterations(50)->UseManualTime()->Repetitions(repetitions);
BENCHMARK_CAPTURE(ours, megabyte, false)->Iterations(5)->UseManualTime()->Repetitions(repetitions);
BENCHMARK_CAPTURE(nginx, megabyte, false)->Iterations(5)->UseManualTime()->Repetitions(repetitions);
BENCHMARK(getOneMegabyte)->Iterations(50)->UseRealTime()->Repetitions(repetitions);
BENCHMARK(writeAndFlush)->Iterations(30)->UseRealTime()->Repetitions(repetitions);
BENCHMARK(putOneMegabyte)->Iterations(30)->UseRealTime()->Repetitions(repetitions);

int measure(int argc, char **argv)
{
    ask(*connected(servers->ours->port()), putText(0), 200);
    return runWithRatios(argc, argv,
        {
            {"conditional GET: processor time / nginx",
                "ours/notModified/iterations:50/repeats:5/manual_time",
                {"nginx/notModified/iterations:50/repeats:5/manual_time"}, 2.0},
            {"GET of 1 MB: processor time / nginx", "ours/megabyte/iterations:5/repeats:5/manual_time",
                {"nginx/megabyte/iterations:5/repeats:5/manual_time"}, 2.0},
            {"durable PUT of 1 MB / write and flush, and a GET",
                "putOneMegabyte/iterations:30/repeats:5/real_time",
                {"writeAndFlush/iterations:30/repeats:5/real_time",
                    "getOneMegabyte/iterations:50/repeats:5/real_time"},
                3.0},
        });
}

} // namespace

int main(int argc, char **argv)
{
    try {
        servers = std::make_unique<Servers>();
        const int code = measure(argc, argv);
        servers.reset();
        return code;
    } catch (const std::exception &error) {
        servers.reset(); // ends the servers
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
