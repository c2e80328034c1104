#include "server/PeerConnections.h"

#include "server/ConnectionWatchdog.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

using namespace nimbrelle::server;
using namespace std::chrono;

namespace {

std::string peer(const char *text)
{
    sockaddr_in v4{};
    v4.sin_family = AF_INET;
    if (::inet_pton(AF_INET, text, &v4.sin_addr) == 1)
        return peerOf(reinterpret_cast<const sockaddr *>(&v4));
    sockaddr_in6 v6{};
    v6.sin6_family = AF_INET6;
    EXPECT_EQ(::inet_pton(AF_INET6, text, &v6.sin6_addr), 1);
    return peerOf(reinterpret_cast<const sockaddr *>(&v6));
}

} // namespace

TEST(PeerConnections, AnIPv6NetworkIsOnePeer)
{
    EXPECT_EQ(peer("2001:db8:1:2::1"), peer("2001:db8:1:2:ffff:ffff:ffff:ffff"));
    EXPECT_NE(peer("2001:db8:1:2::1"), peer("2001:db8:1:3::1"));
    EXPECT_NE(peer("192.0.2.1"), peer("192.0.2.2"));
    EXPECT_EQ(peer("::ffff:192.0.2.1"), peer("192.0.2.1"));
    EXPECT_NE(peer("::ffff:192.0.2.1"), peer("::ffff:192.0.2.2"));
}

TEST(PeerConnections, APeerThatLeavesMakesRoom)
{
    PeerConnections connections(2);
    connections.add("a");
    connections.add("a");
    EXPECT_FALSE(connections.hasRoom("a"));
    EXPECT_TRUE(connections.hasRoom("b"));
    connections.remove("a");
    EXPECT_TRUE(connections.hasRoom("a"));
}

TEST(ConnectionWatchdog, TheTimeForAHeadFallsAsThePoolFills)
{
    const ConnectionWatchdog::Limits limits{.headTime = 16s, .bodyTime = 1h, .capacity = 100};
    const auto at = [&](std::size_t open) { return ConnectionWatchdog::headTimeAt(limits, open); };
    EXPECT_EQ(at(1), 16s);
    EXPECT_EQ(at(50), 16s);
    EXPECT_EQ(at(75), 9s);
    EXPECT_EQ(at(100), 2s);
    EXPECT_EQ(at(101), 2s);
    EXPECT_EQ(ConnectionWatchdog::headTimeAt({.headTime = 16s, .bodyTime = 1h, .capacity = 1}, 1), 2s);
}
