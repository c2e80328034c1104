#include "practice/CommandLine.h"
#include "practice/LexiconReader.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace nimbrelle::practice {

/// Blocked before any thread starts, so that only `waitForEnd` sees them.
static sigset_t blockEndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return signals;
}

static void waitForEnd(const sigset_t &signals)
{
    int received = 0;
    sigwait(&signals, &received);
}

/// Renamed into place, so that whoever waits for the file never reads half a number.
static void writePort(const std::string &path, uint16_t port)
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

static int serve(const CommandLine &line, const Lexicon &lexicon)
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

static int run(std::span<const std::string_view> arguments)
{
    const auto parsed = readCommandLine(arguments);
    if (const auto *fault = std::get_if<std::string>(&parsed)) {
        std::cerr << "nimbrelle-practice: " << *fault << " (see --help)\n";
        return 2;
    }
    const auto &line = std::get<CommandLine>(parsed);
    if (line.mode == Mode::showHelp) {
        std::cout << helpText();
        return 0;
    }
    const auto lexicon = embeddedLexicon();
    if (line.mode == Mode::serve)
        return serve(line, *lexicon);
    for (const Entry &entry : lexicon->entries())
        std::cout << entry.headword << '\n';
    return 0;
}

} // namespace nimbrelle::practice

int main(int argc, char **argv)
{
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    try {
        return nimbrelle::practice::run(arguments);
    } catch (const std::exception &error) {
        std::cerr << "nimbrelle-practice: " << error.what() << '\n';
        return 1;
    }
}
