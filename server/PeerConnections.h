#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <sys/socket.h>
#include <unordered_map>

namespace nimbrelle::server {

/// What counts as one peer: an IPv4 address, or the /64 network of an IPv6 address, of which every household
/// has a whole one. An IPv4 address that came over an IPv6 socket is the same peer as over IPv4.
std::string peerOf(const sockaddr *address);

/// How many connections each peer has open. Calls may come from any thread.
class PeerConnections {
public:
    explicit PeerConnections(std::size_t maxEach) : m_maxEach(maxEach) { }

    bool hasRoom(const std::string &peer);
    void add(const std::string &peer);
    void remove(const std::string &peer);

private:
    const std::size_t m_maxEach;
    std::mutex m_mutex;
    std::unordered_map<std::string, std::size_t> m_open;
};

} // namespace nimbrelle::server
