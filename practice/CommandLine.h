#pragma once

#include "practice/Server.h"

#include <variant>

namespace nimbrelle::practice {

enum class Mode { serve, showHelp, listWords };

struct CommandLine {
    Mode mode = Mode::serve;
    ServerOptions server;
    std::string portFile; ///< where to write the port once it is known; empty for nowhere
};

/// The options, or one sentence that says what is wrong with them. `arguments` are without the program's
/// name.
std::variant<CommandLine, std::string> readCommandLine(std::span<const std::string_view> arguments);

std::string_view helpText();

} // namespace nimbrelle::practice
