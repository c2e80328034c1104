#include "server/ListeningSocket.h"

#include "server/Failure.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <unistd.h>

namespace nimbrelle::server {

namespace {

constexpr int backlog = 512;

using AddressList = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

AddressList resolved(const std::string &address, std::uint16_t port)
{
    addrinfo hints{};
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *list = nullptr;
    const int code = ::getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &list);
    if (code != 0)
        throw Failure("cannot listen at " + address + ": " + ::gai_strerror(code)
            + ". Give an address of this machine with --bind.");
    return {list, &::freeaddrinfo};
}

std::string adviceFor(int error, std::uint16_t port)
{
    switch (error) {
    case EADDRINUSE:
        return "another program listens there. End it, or choose another port with --port.";
    case EACCES:
        return "ports below 1024 need a privilege. Choose a higher one than " + std::to_string(port)
            + " with --port.";
    case EADDRNOTAVAIL:
        return "this machine does not have that address. Give one of its own with --bind.";
    default:
        return std::strerror(error);
    }
}

bool bindAndListen(int descriptor, const sockaddr *address, socklen_t size)
{
    const int on = 1;
    const int off = 0;
    ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (address->sa_family == AF_INET6)
        ::setsockopt(descriptor, IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off);
    return ::bind(descriptor, address, size) == 0 && ::listen(descriptor, backlog) == 0;
}

int newSocket(int family)
{
    return ::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP);
}

} // namespace

ListeningSocket::ListeningSocket(const std::string &address, std::uint16_t port)
{
    if (!address.empty()) {
        open(address, port);
        return;
    }
    const int probe = newSocket(AF_INET6);
    if (probe >= 0)
        ::close(probe);
    open(probe >= 0 ? "::" : "0.0.0.0", port);
}

void ListeningSocket::open(const std::string &address, std::uint16_t port)
{
    const AddressList list = resolved(address, port);
    m_isIPv6 = list->ai_family == AF_INET6;
    m_descriptor = newSocket(list->ai_family);
    if (m_descriptor < 0 || !bindAndListen(m_descriptor, list->ai_addr, list->ai_addrlen)) {
        const int error = errno;
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        throw Failure(
            "cannot listen at " + address + " port " + std::to_string(port) + ": " + adviceFor(error, port));
    }
}

ListeningSocket::~ListeningSocket()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

std::uint16_t ListeningSocket::port() const
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ::getsockname(m_descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    return ntohs(m_isIPv6 ? reinterpret_cast<sockaddr_in6 *>(&address)->sin6_port
                          : reinterpret_cast<sockaddr_in *>(&address)->sin_port);
}

std::string addressText(const sockaddr *address)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    const void *raw = address->sa_family == AF_INET6
        ? static_cast<const void *>(&reinterpret_cast<const sockaddr_in6 *>(address)->sin6_addr)
        : static_cast<const void *>(&reinterpret_cast<const sockaddr_in *>(address)->sin_addr);
    if (!::inet_ntop(address->sa_family, raw, text.data(), text.size()))
        return "-";
    const std::string shown = text.data();
    constexpr std::string_view mapped = "::ffff:";
    const bool isMapped = shown.starts_with(mapped) && shown.find('.') != std::string::npos;
    return isMapped ? shown.substr(mapped.size()) : shown;
}

} // namespace nimbrelle::server
