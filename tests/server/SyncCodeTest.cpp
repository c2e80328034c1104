#include "server/SyncCode.h"

#include "server/Commands.h"
#include "server/Identity.h"
#include "server/ServerUrl.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace nimbrelle::server;

TEST(SyncCode, EscapesWhatWouldPartItsPieces)
{
    const SyncCode code{"https://192.168.1.5:8443", "a&b=c?d e%/+字", std::string(64, 'a')};
    EXPECT_EQ(code.text(),
        "nimbrelle://sync?server=https://192.168.1.5:8443&token=a%26b%3Dc%3Fd%20e%25/+%E5%AD%97&pin="
            + std::string(64, 'a'));
}

TEST(SyncCode, TheTokenNeedsNoEscapeAndComesFromSecretAndSalt)
{
    const std::string token = tokenFor(std::string(32, 'a'), "salt");
    EXPECT_EQ(token.size(), 43U);
    EXPECT_EQ(token.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"),
        std::string::npos);
    EXPECT_EQ(tokenFor(std::string(32, 'a'), "salt"), token);
    EXPECT_NE(tokenFor(std::string(32, 'b'), "salt"), token);
    EXPECT_NE(tokenFor(std::string(32, 'a'), "sale"), token);
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
    struct {
        const char *text;
        const char *shown;
    } const good[] = {{"https://a.example", "https://a.example"},
        {"https://a.example:443/", "https://a.example"},
        {"https://192.168.1.5:8443", "https://192.168.1.5:8443"},
        {"https://[::1]:8443", "https://[::1]:8443"}};
    for (const auto &each : good) {
        const auto url = ServerUrl::parse(each.text);
        ASSERT_TRUE(url) << each.text;
        EXPECT_EQ(url->text(), each.shown);
    }
    for (const char *text : {"", "a.example", "http://a.example", "HTTPS://a", "https://", "https://a/b",
             "https://a:0", "https://a:65536", "https://a:", "https://a:8x", "https://[::1", "https://[a]",
             "https://::1", "https://u@a", "https://a?b", "https://字"})
        EXPECT_FALSE(ServerUrl::parse(text)) << text;
}

TEST(Identity, IsNewEachTimeAndItsPinIsOfTheCertificate)
{
    const Identity one = makeIdentity("192.168.1.5");
    const Identity other = makeIdentity("name.example");
    EXPECT_EQ(one.pin().size(), 64U);
    EXPECT_NE(one.pin(), other.pin());
    EXPECT_NE(one.key, other.key);
}
