#pragma once

#include "practice/Server.h"

#include <iosfwd>
#include <variant>

namespace nimbrelle::practice {

enum class Mode { serve, listWords };

struct CommandLine {
    Mode mode = Mode::serve;
    ServerOptions server;
    std::string portFile; ///< where to write the port once it is known; empty for nowhere
};

/// The options, or the exit code when all is said: the help on `out`, or one line on `errors` and 2.
std::variant<CommandLine, int> readCommandLine(
    int count, const char *const *arguments, std::ostream &out, std::ostream &errors);

} // namespace nimbrelle::practice
