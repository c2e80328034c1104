#include "server/ServerUrl.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>
#include <unistd.h>

namespace nimbrelle::server {

namespace {

bool isHostCharacter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z')
        || (character >= '0' && character <= '9') || character == '-' || character == '.' || character == '_';
}

bool isHost(const std::string &host)
{
    return !host.empty() && std::ranges::all_of(host, isHostCharacter);
}

bool isIPv6Address(const std::string &host)
{
    in6_addr address{};
    return ::inet_pton(AF_INET6, host.c_str(), &address) == 1;
}

std::optional<std::uint16_t> parsedPort(std::string_view text)
{
    unsigned port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && port > 0 && port <= 65535 ? std::optional(static_cast<std::uint16_t>(port))
                                              : std::nullopt;
}

bool isVirtual(std::string_view interface)
{
    constexpr std::array<std::string_view, 6> prefixes{"docker", "br-", "veth", "virbr", "tun", "lxc"};
    return std::ranges::any_of(
        prefixes, [&](std::string_view prefix) { return interface.starts_with(prefix); });
}

// Home networks first; 0 is of no use.
int preference(std::string_view address)
{
    if (address.starts_with("169.254.") || address.starts_with("127."))
        return 0;
    if (address.starts_with("192.168."))
        return 3;
    return address.starts_with("10.") ? 2 : 1;
}

std::string addressText(const sockaddr *address)
{
    std::array<char, INET_ADDRSTRLEN> text{};
    const auto *ip = reinterpret_cast<const sockaddr_in *>(address);
    return ::inet_ntop(AF_INET, &ip->sin_addr, text.data(), text.size()) ? text.data() : "";
}

std::string hostName()
{
    std::array<char, 256> name{};
    if (::gethostname(name.data(), name.size() - 1) != 0 || !isHost(name.data()))
        return "localhost";
    return name.data();
}

} // namespace

std::optional<ServerUrl> ServerUrl::parse(std::string_view text)
{
    constexpr std::string_view scheme = "https://";
    if (!text.starts_with(scheme))
        return std::nullopt;
    text.remove_prefix(scheme.size());
    if (text.ends_with('/'))
        text.remove_suffix(1);

    ServerUrl url;
    const bool bracketed = text.starts_with('[');
    const auto hostEnd = std::min(bracketed ? text.find(']') : text.find(':'), text.size());
    url.host = text.substr(bracketed ? 1 : 0, hostEnd - (bracketed ? 1 : 0));
    if (bracketed ? hostEnd == text.size() || !isIPv6Address(url.host) : !isHost(url.host))
        return std::nullopt;
    const auto rest = text.substr(std::min(hostEnd + (bracketed ? 1 : 0), text.size()));
    if (rest.empty())
        return url;
    const auto port = rest.starts_with(':') ? parsedPort(rest.substr(1)) : std::nullopt;
    if (!port)
        return std::nullopt;
    url.port = *port;
    return url;
}

std::string ServerUrl::text() const
{
    const std::string shown = host.find(':') == std::string::npos ? host : '[' + host + ']';
    return "https://" + shown + (port == 443 ? "" : ':' + std::to_string(port));
}

std::string guessedHost()
{
    ifaddrs *list = nullptr;
    if (::getifaddrs(&list) != 0)
        return hostName();
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(list, &::freeifaddrs);
    std::string best;
    for (const ifaddrs *each = list; each; each = each->ifa_next) {
        const bool usable = each->ifa_addr && each->ifa_addr->sa_family == AF_INET
            && (each->ifa_flags & IFF_UP) != 0 && !isVirtual(each->ifa_name);
        const std::string address = usable ? addressText(each->ifa_addr) : "";
        if (!address.empty() && preference(address) > (best.empty() ? 0 : preference(best)))
            best = address;
    }
    return best.empty() ? hostName() : best;
}

} // namespace nimbrelle::server
