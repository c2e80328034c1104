#include "server/support/TlsClient.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbrelle::server {

namespace {

constexpr int patience = 10; // seconds

sockaddr_in loopback(const std::string &address, std::uint16_t port)
{
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    ::inet_pton(AF_INET, address.c_str(), &result.sin_addr);
    return result;
}

const sockaddr *generic(const sockaddr_in &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

std::string lowerCase(std::string text)
{
    std::ranges::transform(
        text, text.begin(), [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

Reply parsedHead(std::string_view head)
{
    Reply reply;
    std::from_chars(head.data() + 9, head.data() + 12, reply.status);
    for (auto line = head.find("\r\n"); line != std::string_view::npos; line = head.find("\r\n", line + 2)) {
        const auto text = head.substr(line + 2, head.find("\r\n", line + 2) - line - 2);
        const auto colon = text.find(": ");
        if (colon != std::string_view::npos)
            reply.headers[lowerCase(std::string(text.substr(0, colon)))] = text.substr(colon + 2);
    }
    return reply;
}

} // namespace

std::string Reply::header(const std::string &name) const
{
    const auto found = headers.find(name);
    return found == headers.end() ? "" : found->second;
}

TlsClient::TlsClient(std::uint16_t port, const std::string &from)
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const timeval limit{patience, 0};
    const int on = 1;
    ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    ::setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const auto source = loopback(from, 0);
    const auto target = loopback("127.0.0.1", port);
    if (::bind(m_socket, generic(source), sizeof source) != 0
        || ::connect(m_socket, generic(target), sizeof target) != 0) {
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

bool TlsClient::shakeHands()
{
    gnutls_certificate_allocate_credentials(&m_credentials);
    gnutls_init(&m_session, GNUTLS_CLIENT | GNUTLS_NO_SIGNAL);
    gnutls_set_default_priority(m_session);
    gnutls_credentials_set(m_session, GNUTLS_CRD_CERTIFICATE, m_credentials);
    gnutls_transport_set_int(m_session, m_socket);
    gnutls_handshake_set_timeout(m_session, patience * 1000);
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

bool TlsClient::send(std::string_view bytes)
{
    if (!m_session && !shakeHands())
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
    std::array<char, 16 * 1024> piece{};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(patience);
    ssize_t count = GNUTLS_E_INTERRUPTED;
    // A session ticket that arrives between answers shows as "again", too.
    while (
        (count == GNUTLS_E_INTERRUPTED || count == GNUTLS_E_AGAIN) && std::chrono::steady_clock::now() < end)
        count = gnutls_record_recv(m_session, piece.data(), piece.size());
    if (count > 0)
        m_unread.append(piece.data(), static_cast<std::size_t>(count));
    return count > 0;
}

std::optional<Reply> TlsClient::receive(bool expectBody)
{
    std::size_t end = 0;
    while ((end = m_unread.find("\r\n\r\n")) == std::string::npos) {
        if (!m_isOpen || !readMore())
            return std::nullopt;
    }
    Reply reply = parsedHead(std::string_view(m_unread).substr(0, end));
    m_unread.erase(0, end + 4);
    const std::string length = reply.header("content-length");
    const std::size_t size = expectBody && !length.empty() ? std::stoul(length) : 0;
    while (m_unread.size() < size) {
        if (!readMore())
            return std::nullopt;
    }
    reply.body = m_unread.substr(0, size);
    m_unread.erase(0, size);
    return reply;
}

std::optional<Reply> TlsClient::exchange(std::string_view request)
{
    // An answer may come although the request could not be sent to its end.
    send(request);
    return receive(!request.starts_with("HEAD"));
}

bool TlsClient::isEndedWithin(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    std::array<char, 4096> dropped{};
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd watched{m_socket, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&watched, 1, static_cast<int>(left.count())) == 0)
            return false;
        if (::recv(m_socket, dropped.data(), dropped.size(), MSG_DONTWAIT) <= 0)
            return true;
    }
}

void TlsClient::breakOff()
{
    ::shutdown(m_socket, SHUT_RDWR);
}

std::string requestText(std::string_view method, std::string_view path, const std::string &token,
    const std::string &more, std::string_view body)
{
    std::string text = std::string(method) + ' ' + std::string(path) + " HTTP/1.1\r\nHost: localhost\r\n";
    if (!token.empty())
        text += "Authorization: Bearer " + token + "\r\n";
    if (!body.empty())
        text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    return text + more + "\r\n" + std::string(body);
}

} // namespace nimbrelle::server
