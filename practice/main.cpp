#include "practice/CommandLine.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace nimbrelle::practice {

namespace {

/// Blocked before any thread starts, so that only `waitForEnd` sees them.
sigset_t blockEndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return signals;
}

void waitForEnd(const sigset_t &signals)
{
    int received = 0;
    sigwait(&signals, &received);
}

/// Renamed into place, so that whoever waits for the file never reads half a number.
void writePort(const std::string &path, uint16_t port)
{
    const std::string unfinished = path + ".new";
    std::ofstream file(unfinished);
    file << port << '\n';
    file.close();
    std::error_code error;
    if (file)
        std::filesystem::rename(unfinished, path, error);
    if (!file || error)
        throw ServerError("cannot write " + path);
}

int serve(const CommandLine &line, const Lexicon &lexicon)
{
    const sigset_t signals = blockEndSignals();
    const Server server(lexicon, line.server);
    if (!line.portFile.empty())
        writePort(line.portFile, server.port());
    std::cout << "listening on http://127.0.0.1:" << server.port() << std::endl;
    waitForEnd(signals);
    std::error_code ignored;
    if (!line.portFile.empty())
        std::filesystem::remove(line.portFile, ignored);
    return 0;
}

int run(const CommandLine &line)
{
    const Lexicon lexicon;
    if (line.mode == Mode::serve)
        return serve(line, lexicon);
    for (const Value *entry : lexicon.entries())
        std::cout << textAt(*entry, "headword") << '\n';
    return 0;
}

} // namespace

} // namespace nimbrelle::practice

int main(int argc, char **argv)
{
    using namespace nimbrelle::practice;
    try {
        const auto parsed = readCommandLine(argc, argv, std::cout, std::cerr);
        const auto *line = std::get_if<CommandLine>(&parsed);
        return line ? run(*line) : std::get<int>(parsed);
    } catch (const std::exception &error) {
        std::cerr << "nimbrelle-practice: " << error.what() << '\n';
        return 1;
    }
}
