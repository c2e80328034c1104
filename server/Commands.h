#pragma once

#include "server/Options.h"
#include "server/StoreLocation.h"

#include <iosfwd>

namespace nimbrelle::server {

/// The commands that end by themselves. Each throws Failure.
namespace Commands {

enum class Output { terminal, file };

void init(const Options &options, std::ostream &out, Output output);
void addToken(const Options &options, std::ostream &out, Output output);
void listTokens(const Options &options, std::ostream &out);
void revokeToken(const Options &options, std::ostream &out);
void printCode(const Options &options, std::ostream &out, Output output);
void printHistory(const Options &options, std::ostream &out);
void restore(const Options &options, std::ostream &out);
void quota(const Options &options, std::ostream &out);
void prune(const Options &options, std::ostream &out);
void move(const Options &options, std::ostream &out);

} // namespace Commands

/// Runs until SIGTERM, SIGINT or SIGHUP. Throws Failure when it can't start.
void serve(const Options &options, std::ostream &messages);

/// What init keeps for serve.
namespace Setting {
inline constexpr std::string_view url = "url";
inline constexpr std::string_view port = "port";
inline constexpr std::string_view bind = "bind";
} // namespace Setting

StoreLocation storeLocation(const Options &options);

inline constexpr std::uint16_t defaultPort = 8443;

} // namespace nimbrelle::server
