#include "server/SyncCode.h"

#include "server/ServerUrl.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace nimbrelle::server;

TEST(SyncCode, EscapesWhatSeparatesItsParts)
{
    const SyncCode code{
        .server = "https://192.168.1.5:8443", .token = "a&b=c?d e%/+字", .pin = std::string(64, 'a')};
    EXPECT_EQ(code.text(),
        "nimbrelle://sync?server=https://192.168.1.5:8443&token=a%26b%3Dc%3Fd%20e%25/+%E5%AD%97&pin="
            + std::string(64, 'a'));
}

TEST(SyncCode, ThePictureIsSquareWithAMargin)
{
    const std::string picture = terminalQr("nimbrelle://sync?");
    std::string row = picture.substr(0, picture.find('\n'));
    // A version 2 code has 25 modules; with four on each side that makes 33, two rows to a line.
    EXPECT_EQ(row, "\033[30;107m" + std::string(33, ' ') + "\033[0m");
    EXPECT_EQ(std::ranges::count(picture, '\n'), 17);
}

TEST(ServerUrl, TakesSchemeHostAndPortOnly)
{
    for (const char *text : {"https://a.example", "https://192.168.1.5:8443", "https://[::1]:8443"}) {
        ASSERT_TRUE(ServerUrl::parse(text)) << text;
        EXPECT_EQ(ServerUrl::parse(text)->text(), text);
    }
    EXPECT_EQ(ServerUrl::parse("https://a.example:443/")->text(), "https://a.example");
    for (const char *text : {"", "a.example", "http://a.example", "HTTPS://a", "https://", "https://a/b",
             "https://a:0", "https://a:65536", "https://a:", "https://a:8x", "https://[::1", "https://[a]",
             "https://::1", "https://u@a", "https://a?b", "https://字"})
        EXPECT_FALSE(ServerUrl::parse(text)) << text;
}
