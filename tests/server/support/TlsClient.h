#pragma once

#include <chrono>
#include <cstdint>
#include <gnutls/gnutls.h>
#include <string>
#include <string_view>

namespace nimbrelle::server {

struct Reply {
    int status = 0; ///< 0: the connection ended before a whole answer came
    std::string head;
    std::string body;

    /// Empty when there is no such line.
    std::string header(const std::string &name) const;
};

/// One connection to loopback that says exactly what a test wants said, also half of it, slowly or wrong.
/// Nothing here waits longer than half a minute, unless asked to.
class TlsClient {
public:
    /// Connects without a word of TLS.
    explicit TlsClient(std::uint16_t port, const std::string &from = "127.0.0.1");
    TlsClient(const TlsClient &) = delete;
    TlsClient &operator=(const TlsClient &) = delete;
    ~TlsClient();

    bool handshake();
    /// Bytes below TLS.
    bool sendRaw(std::string_view bytes);
    /// All up to the end of the connection.
    std::string receiveRaw();
    /// Shakes hands first where that wasn't done.
    bool send(std::string_view bytes);
    Reply receive(bool expectBody = true);
    /// A HEAD's answer has no body.
    Reply exchange(std::string_view request);
    /// Reads and drops until the other side ends the connection; false when it didn't in time.
    bool isClosedWithin(std::chrono::milliseconds time);
    void abort();

private:
    bool readMore();

    int m_socket = -1;
    bool m_isOpen = false;
    gnutls_certificate_credentials_t m_credentials = nullptr;
    gnutls_session_t m_session = nullptr;
    std::string m_unread;
};

/// A request's text; `headers` holds more lines that each end in CR LF. A body brings its length along.
std::string requestText(std::string_view method, std::string_view path, const std::string &token,
    const std::string &headers = {}, std::string_view body = {});

} // namespace nimbrelle::server
