#include "server/Commands.h"
#include "server/DataDirectory.h"
#include "server/Failure.h"
#include "server/MonitoringServer.h"
#include "server/StoreFactory.h"

#include <charconv>
#include <csignal>
#include <ostream>
#include <sys/resource.h>
#include <unistd.h>

namespace nimbrelle::server {

namespace {

constexpr std::chrono::seconds shutdownGrace{5};

// Must stand before the first thread starts, for threads inherit what is blocked.
class TerminationSignals {
public:
    TerminationSignals()
    {
        ::sigemptyset(&m_signals);
        for (const int signal : {SIGTERM, SIGINT, SIGHUP})
            ::sigaddset(&m_signals, signal);
        ::pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    }
    void wait() const
    {
        int signal = 0;
        while (::sigwait(&m_signals, &signal) != 0) { }
    }

private:
    sigset_t m_signals{};
};

// Of open files, when all that may be open at once is.
rlim_t neededDescriptors(const Options &options)
{
    constexpr rlim_t fileStore =
        16; // two connections with three files each, and what SQLite needs for a moment
    constexpr rlim_t perDatabaseConnection = 3; // while it is made, with its password file and name server
    constexpr rlim_t perThread = 4; // an epoll and an event, and a connection that is refused
    constexpr rlim_t others = 16; // the log, the listeners, and files that are read at the start
    const rlim_t store = storeLocation(options).isPostgres()
        ? rlim_t{options.storeConnections} * perDatabaseConnection
        : fileStore;
    const rlim_t monitoring = options.metricsPort ? MonitoringServer::maxConnections + perThread : 0;
    return options.limits.maxConnections + ConnectionWatchdog::maxLingering + monitoring + store
        + rlim_t{options.limits.threads} * perThread + others;
}

void raiseFileLimit(rlim_t needed)
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    if (limit.rlim_cur >= needed)
        return;
    if (limit.rlim_max < needed)
        throw Failure("only " + std::to_string(limit.rlim_max) + " files may be open, and "
            + std::to_string(needed) + " may be needed. Raise that limit, or lower --max-connections.");
    limit.rlim_cur = needed;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

std::uint16_t storedPort(Store &store)
{
    const std::string text = store.setting(Setting::port).value_or("");
    std::uint16_t port = defaultPort;
    std::from_chars(text.data(), text.data() + text.size(), port);
    return port;
}

void writeLine(const std::string &line)
{
    const std::string whole = line + '\n';
    // A log that can't be written must not end the server.
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, whole.data(), whole.size());
}

} // namespace

void serve(const Options &options, std::ostream &messages)
{
    const TerminationSignals signals;
    const DataDirectory directory(options.data);
    directory.requirePrivate();
    const auto store = openStore(storeLocation(options), options.storeConnections);
    const Identity identity = loadIdentity(directory);
    store->check();
    raiseFileLimit(neededDescriptors(options));
    const std::string address = options.bind.value_or(store->setting(Setting::bind).value_or(""));
    auto socket = std::make_unique<ListeningSocket>(address, options.port.value_or(storedPort(*store)));
    const HttpServer::Log log{.write = writeLine, .eachRequest = options.accessLog};
    auto metricsSocket = options.metricsPort
        ? std::make_unique<ListeningSocket>(options.metricsBind, *options.metricsPort)
        : nullptr;
    HttpServer server(std::move(socket), identity, *store, options.limits, log);
    std::optional<MonitoringServer> monitoring;
    if (metricsSocket)
        monitoring.emplace(std::move(metricsSocket), server, *store);
    messages << "nimbrelle-server: listening at " << (address.empty() ? "all addresses" : address) << " port "
             << server.port() << "; devices use " << store->setting(Setting::url).value_or("")
             << (monitoring ? "; metrics at " + options.metricsBind + " port "
                            + std::to_string(monitoring->port())
                            : "")
             << std::endl;
    signals.wait();
    server.stop(shutdownGrace);
    messages << "nimbrelle-server: ended" << std::endl;
}

} // namespace nimbrelle::server
