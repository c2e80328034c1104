#include "practice/CommandLine.h"

#include <charconv>

namespace nimbrelle::practice {

template <typename Number> static std::optional<Number> numberOf(std::string_view text)
{
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size() && !text.empty();
    return whole ? std::optional(number) : std::nullopt;
}

/// The sentence that says what is wrong with the value, or nothing.
static std::string setValue(CommandLine &line, std::string_view option, std::string_view value)
{
    if (option == "--port") {
        const auto port = numberOf<uint16_t>(value);
        line.server.port = port.value_or(0);
        return port ? "" : "--port takes a number from 0 to 65535";
    }
    if (option == "--delay-ms") {
        constexpr unsigned longest = 60'000;
        const auto delay = numberOf<unsigned>(value);
        line.server.delay = std::chrono::milliseconds(delay.value_or(0));
        return delay && *delay <= longest ? "" : "--delay-ms takes a number from 0 to 60000";
    }
    if (option == "--fail") {
        const auto failure = failureNamed(value);
        line.server.failure = failure.value_or(Failure::none);
        return failure ? "" : "--fail takes 401, 402, 500, slow, cut or garbage";
    }
    if (option == "--port-file") {
        line.portFile = value;
        return value.empty() ? "--port-file takes a path" : "";
    }
    return "unknown option " + std::string(option);
}

std::variant<CommandLine, std::string> readCommandLine(std::span<const std::string_view> arguments)
{
    CommandLine line;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view option = arguments[i];
        if (option == "--help" || option == "--words") {
            line.mode = option == "--help" ? Mode::showHelp : Mode::listWords;
            continue;
        }
        const bool takesValue =
            option == "--port" || option == "--delay-ms" || option == "--fail" || option == "--port-file";
        if (takesValue && i + 1 == arguments.size())
            return std::string(option) + " needs a value";
        std::string fault = setValue(line, option, takesValue ? arguments[++i] : std::string_view());
        if (!fault.empty())
            return fault;
    }
    return line;
}

std::string_view helpText()
{
    return "Usage: nimbrelle-practice [options]\n"
           "A practice provider for Nimbrelle on 127.0.0.1. It answers from a built-in word list; it is no "
           "AI.\n\n"
           "  --port N          listen on this port; 0, the default, takes a free one\n"
           "  --port-file PATH  write the port to this file once it is known\n"
           "  --delay-ms N      milliseconds between the pieces of a stream (20)\n"
           "  --fail KIND       fail every request: 401, 402, 500, slow, cut or garbage;\n"
           "                    a key such as \"fail-402\" does so for one request\n"
           "  --words           print the words it knows and end\n"
           "  --help            print this and end\n";
}

} // namespace nimbrelle::practice
