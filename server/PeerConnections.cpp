#include "server/PeerConnections.h"

#include <netinet/in.h>

namespace nimbrelle::server {

namespace {

template <typename Address> std::string bytesOf(const Address &address, std::size_t from, std::size_t count)
{
    return std::string(reinterpret_cast<const char *>(&address), sizeof address).substr(from, count);
}

} // namespace

std::string peerOf(const sockaddr *address)
{
    if (address->sa_family != AF_INET6)
        return bytesOf(reinterpret_cast<const sockaddr_in *>(address)->sin_addr, 0, 4);
    const in6_addr &full = reinterpret_cast<const sockaddr_in6 *>(address)->sin6_addr;
    return IN6_IS_ADDR_V4MAPPED(&full) ? bytesOf(full, 12, 4) : bytesOf(full, 0, 8);
}

bool PeerConnections::hasRoom(const std::string &peer)
{
    const std::lock_guard lock(m_mutex);
    const auto open = m_open.find(peer);
    return open == m_open.end() || open->second < m_maxEach;
}

void PeerConnections::add(const std::string &peer)
{
    const std::lock_guard lock(m_mutex);
    ++m_open[peer];
}

void PeerConnections::remove(const std::string &peer)
{
    const std::lock_guard lock(m_mutex);
    const auto open = m_open.find(peer);
    if (open != m_open.end() && --open->second == 0)
        m_open.erase(open);
}

} // namespace nimbrelle::server
