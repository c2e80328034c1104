#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nimbrelle::server {

/// Where devices reach the server: https://host:port, and nothing behind it.
struct ServerUrl {
    std::string host; ///< a name or an address; an IPv6 address without its brackets
    std::uint16_t port = 443;

    /// Absent when it is anything else; one slash at the end is forgiven.
    static std::optional<ServerUrl> parse(std::string_view text);
    std::string text() const;
};

/// This machine's address in the local network, else its name; a guess that the user must be told of.
std::string guessedHost();

} // namespace nimbrelle::server
