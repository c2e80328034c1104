#include "server/support/TlsClient.h"

#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <cstring>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbrelle::server {

namespace {

constexpr int timeoutSeconds = 30;

// Calls `function`, which is bind or connect.
bool with(int socket, auto *function, const std::string &address, std::uint16_t port)
{
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    ::inet_pton(AF_INET, address.c_str(), &target.sin_addr);
    return function(socket, reinterpret_cast<const sockaddr *>(&target), sizeof target) == 0;
}

} // namespace

std::string Reply::header(const std::string &name) const
{
    const std::string before = "\r\n" + name + ": ";
    const char *line = ::strcasestr(head.c_str(), before.c_str());
    const std::string_view value = line ? line + before.size() : "";
    return std::string(value.substr(0, value.find("\r\n")));
}

TlsClient::TlsClient(std::uint16_t port, const std::string &from)
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const timeval limit{.tv_sec = timeoutSeconds, .tv_usec = 0};
    const int on = 1;
    ::setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (!with(m_socket, ::bind, from, 0) || !with(m_socket, ::connect, "127.0.0.1", port)) {
        ::close(m_socket);
        throw std::runtime_error("no connection to port " + std::to_string(port));
    }
}

TlsClient::~TlsClient()
{
    if (m_session)
        gnutls_deinit(m_session);
    if (m_credentials)
        gnutls_certificate_free_credentials(m_credentials);
    ::close(m_socket);
}

bool TlsClient::handshake()
{
    gnutls_certificate_allocate_credentials(&m_credentials);
    gnutls_init(&m_session, GNUTLS_CLIENT | GNUTLS_NO_SIGNAL);
    gnutls_set_default_priority(m_session);
    gnutls_credentials_set(m_session, GNUTLS_CRD_CERTIFICATE, m_credentials);
    gnutls_transport_set_int(m_session, m_socket);
    gnutls_handshake_set_timeout(m_session, timeoutSeconds * 1000);
    gnutls_record_set_timeout(m_session, timeoutSeconds * 1000);
    int code = GNUTLS_E_AGAIN;
    while (code < 0 && gnutls_error_is_fatal(code) == 0)
        code = gnutls_handshake(m_session);
    m_isOpen = code == GNUTLS_E_SUCCESS;
    return m_isOpen;
}

bool TlsClient::sendRaw(std::string_view bytes)
{
    return ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

std::string TlsClient::receiveRaw()
{
    const timeval limit{.tv_sec = timeoutSeconds, .tv_usec = 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t count = 0; (count = ::recv(m_socket, piece.data(), piece.size(), 0)) > 0;)
        text.append(piece.data(), static_cast<std::size_t>(count));
    return text;
}

bool TlsClient::send(std::string_view bytes)
{
    if (!m_session && !handshake())
        return false;
    while (!bytes.empty()) {
        const ssize_t sent = gnutls_record_send(m_session, bytes.data(), bytes.size());
        if (sent == GNUTLS_E_INTERRUPTED)
            continue;
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool TlsClient::readMore()
{
    std::array<char, 16UL * 1024> piece{};
    ssize_t count = GNUTLS_E_AGAIN; // which stands for a session ticket, too
    while (count == GNUTLS_E_AGAIN || count == GNUTLS_E_INTERRUPTED)
        count = gnutls_record_recv(m_session, piece.data(), piece.size());
    if (count > 0)
        m_unread.append(piece.data(), static_cast<std::size_t>(count));
    return count > 0;
}

Reply TlsClient::receive(bool expectBody)
{
    std::size_t end = 0;
    while ((end = m_unread.find("\r\n\r\n")) == std::string::npos) {
        if (!m_isOpen || !readMore())
            return {};
    }
    Reply reply;
    reply.head = m_unread.substr(0, end);
    m_unread.erase(0, end + 4);
    const std::string length = reply.header("content-length");
    const std::size_t size = expectBody && !length.empty() ? std::stoul(length) : 0;
    while (m_unread.size() < size) {
        if (!readMore())
            return {};
    }
    reply.body = m_unread.substr(0, size);
    m_unread.erase(0, size);
    std::from_chars(reply.head.data() + 9, reply.head.data() + 12, reply.status);
    return reply;
}

Reply TlsClient::exchange(std::string_view request)
{
    // An answer may come although the request could not be sent to its end.
    send(request);
    return receive(!request.starts_with("HEAD"));
}

bool TlsClient::isClosedWithin(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    std::array<char, 4096> dropped{};
    while (std::chrono::steady_clock::now() < end) {
        pollfd watched{.fd = m_socket, .events = POLLIN, .revents = 0};
        if (::poll(&watched, 1, 10) > 0
            && ::recv(m_socket, dropped.data(), dropped.size(), MSG_DONTWAIT) <= 0)
            return true;
    }
    return false;
}

void TlsClient::abort()
{
    ::shutdown(m_socket, SHUT_RDWR);
}

std::string requestText(std::string_view method, std::string_view path, const std::string &token,
    const std::string &headers, std::string_view body)
{
    std::string text = std::string(method) + ' ' + std::string(path) + " HTTP/1.1\r\nHost: localhost\r\n";
    if (!token.empty())
        text += "Authorization: Bearer " + token + "\r\n";
    if (!body.empty())
        text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    return text + headers + "\r\n" + std::string(body);
}

} // namespace nimbrelle::server
