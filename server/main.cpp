#include "server/Commands.h"
#include "server/Failure.h"

#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace nimbrelle::server;

void run(const Options &options)
{
    const auto output = ::isatty(STDOUT_FILENO) != 0 ? Commands::Output::terminal : Commands::Output::file;
    switch (options.command) {
    case Command::init:
        return Commands::init(options, std::cout, output);
    case Command::serve:
        return serve(options, std::cerr);
    case Command::tokenAdd:
        return Commands::addToken(options, std::cout, output);
    case Command::tokenList:
        return Commands::listTokens(options, std::cout);
    case Command::tokenRevoke:
        return Commands::revokeToken(options, std::cout);
    case Command::code:
        return Commands::printCode(options, std::cout, output);
    case Command::history:
        return Commands::printHistory(options, std::cout);
    case Command::restore:
        return Commands::restore(options, std::cout);
    case Command::quota:
        return Commands::quota(options, std::cout);
    case Command::prune:
        return Commands::prune(options, std::cout);
    case Command::move:
        return Commands::move(options, std::cout);
    }
}

int report(const std::exception &error, int code)
{
    std::cerr << "nimbrelle-server: " << error.what() << '\n';
    return code;
}

} // namespace

int main(int argc, char **argv)
{
    ::umask(077); // nothing that is made here is for others
    try {
        const auto parsed = parseCommandLine(argc, argv, std::cout, std::cerr);
        if (const int *code = std::get_if<int>(&parsed))
            return *code;
        run(std::get<Options>(parsed));
        return 0;
    } catch (const UsageFailure &failure) {
        return report(failure, 2);
    } catch (const std::exception &error) {
        return report(error, 1);
    }
}
