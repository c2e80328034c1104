#pragma once

#include <cstdint>
#include <string>
#include <sys/socket.h>

namespace nimbrelle::server {

/// A bound and listening TCP socket. With an empty address it takes IPv6 and IPv4 on all interfaces.
class ListeningSocket {
public:
    /// Port 0 lets the system choose. Throws Failure with what to do about it.
    ListeningSocket(const std::string &address, std::uint16_t port);
    ListeningSocket(const ListeningSocket &) = delete;
    ListeningSocket &operator=(const ListeningSocket &) = delete;
    ~ListeningSocket();

    int descriptor() const { return m_descriptor; }
    std::uint16_t port() const;
    bool isIPv6() const { return m_isIPv6; }

private:
    void open(const std::string &address, std::uint16_t port);

    int m_descriptor = -1;
    bool m_isIPv6 = false;
};

/// Numeric, and an IPv4 address that came over an IPv6 socket in its usual form.
std::string addressText(const sockaddr *address);

} // namespace nimbrelle::server
