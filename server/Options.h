#pragma once

#include "server/HttpServer.h"

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <variant>

namespace nimbrelle::server {

enum class Command {
    init,
    serve,
    tokenAdd,
    tokenList,
    tokenRevoke,
    code,
    history,
    restore,
    quota,
    prune,
    move
};

/// What the command line says, with the defaults filled in. Absent means that what init kept holds.
struct Options {
    Command command = Command::serve;
    std::filesystem::path data;
    std::string store; ///< as StoreLocation takes it; empty: the file in the data folder
    std::string moveFrom;
    std::string moveTo; ///< empty with undoMove
    bool undoMove = false;
    unsigned storeConnections = 8;
    std::string name; ///< of a notebook; empty: the only one
    std::optional<std::string> url;
    std::optional<std::uint16_t> port;
    std::optional<std::string> bind;
    std::int64_t version = 0;
    std::optional<std::int64_t> quotaBytes; ///< absent: as it is
    std::optional<std::int64_t> quotaVersions;
    bool dropOwnQuota = false;
    bool allNotebooks = false;
    unsigned keptNewest = 20;
    unsigned olderThanDays = 0;
    bool alsoBeforeLoss = false;
    bool dryRun = false;
    enum class Qr { inTerminal, always, never } qr = Qr::inTerminal;
    ServerLimits limits;
    bool accessLog = true;
    std::optional<std::uint16_t> metricsPort; ///< absent: no metrics are served
    std::string metricsBind = "127.0.0.1";
};

/// The options, or the exit code when all is said: a help text on `out`, or one line on `errors` and 2.
std::variant<Options, int> parseCommandLine(
    int count, const char *const *arguments, std::ostream &out, std::ostream &errors);

} // namespace nimbrelle::server
