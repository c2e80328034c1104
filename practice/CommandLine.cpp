#include "practice/CommandLine.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <ostream>

namespace nimbrelle::practice {

namespace {

CLI::Validator wholeNumber(unsigned most)
{
    const auto check = [most](const std::string &text) {
        unsigned number = 0;
        const char *end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, number);
        return error == std::errc() && rest == end && number <= most
            ? ""
            : "takes a number from 0 to " + std::to_string(most);
    };
    return {check, ""};
}

void addFailure(CLI::App &app, ServerOptions &server)
{
    const auto check = [](const std::string &name) {
        return failureNamed(name) ? "" : "takes 401, 402, 500, slow, cut or garbage";
    };
    const auto take = [&server](const std::string &name) { server.failure = *failureNamed(name); };
    app.add_option_function<std::string>("--fail", take,
           "Fail every request: 401, 402, 500, slow, cut or garbage; a key such as \"fail-402\" does so for "
           "one request")
        ->check(check, "")
        ->type_name("KIND");
}

void addOptions(CLI::App &app, CommandLine &line)
{
    app.set_help_flag("--help", "Say what can be given, and end");
    app.option_defaults()->take_last();
    app.add_option("--port", line.server.port, "Listen on this port; 0, the default, takes a free one")
        ->check(wholeNumber(65'535))
        ->type_name("N");
    app.add_option("--port-file", line.portFile, "Write the port to this file once it is known")
        ->check([](const std::string &path) { return path.empty() ? "takes a path" : ""; }, "")
        ->type_name("PATH");
    app.add_option_function<unsigned>(
           "--delay-ms", [&line](unsigned ms) { line.server.delay = std::chrono::milliseconds(ms); },
           "Milliseconds between the pieces of a stream (20)")
        ->check(wholeNumber(60'000))
        ->type_name("N");
    addFailure(app, line.server);
    app.add_flag_callback(
        "--words", [&line] { line.mode = Mode::listWords; }, "Print the words it knows and end");
}

} // namespace

std::variant<CommandLine, int> readCommandLine(
    int count, const char *const *arguments, std::ostream &out, std::ostream &errors)
{
    CommandLine line;
    CLI::App app(
        "A practice provider for Nimbrelle on 127.0.0.1. It answers from a built-in word list; it is "
        "no AI.",
        "nimbrelle-practice");
    addOptions(app, line);
    try {
        app.parse(count, arguments);
        return line;
    } catch (const CLI::Success &wish) {
        return app.exit(wish, out, errors);
    } catch (const CLI::ParseError &error) {
        errors << "nimbrelle-practice: " << error.what() << " (see --help)\n";
        return 2;
    }
}

} // namespace nimbrelle::practice
