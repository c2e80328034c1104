#include "sync/SyncLink.h"

#include "frame/AppConfig.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

const QString pin(64, u'a');
const QString token = QStringLiteral("0123456789abcdef");

QString code(const QString &server, const QString &itsToken = token, const QString &itsPin = pin)
{
    return QStringLiteral("nimbrelle://sync?server=%1&token=%2&pin=%3").arg(server, itsToken, itsPin);
}

std::optional<QString> serverOf(const QString &server)
{
    const auto link = SyncLink::fromText(code(server));
    return link ? std::optional(link->server) : std::nullopt;
}

TEST(SyncLink, IsFoundInWhateverTheServerPrinted)
{
    const QString link = code(QStringLiteral("https://home.example:8443"));
    const SyncLink expected{QStringLiteral("https://home.example:8443"), token, pin};
    EXPECT_EQ(SyncLink::fromText(link), expected);
    EXPECT_EQ(
        SyncLink::fromText(QStringLiteral("同步码：\n") + link + QStringLiteral("\u3000请保存好")), expected);
    EXPECT_EQ(
        SyncLink::fromText(QString(link).replace(0, 17, QStringLiteral("NIMBRELLE://SYNC?"))), expected);
    EXPECT_EQ(SyncLink::fromText(QString(link).insert(17, QStringLiteral(" \t"))), expected);
    EXPECT_EQ(SyncLink::fromText(link + QStringLiteral("&pin=x&&token=later")), expected);
    EXPECT_EQ(SyncLink::fromText(QString(link).replace(u'?', QStringLiteral("?pin=&=x&novalue&"))), expected);
}

TEST(SyncLink, IsNothingWhenAnyPartIsNoGood)
{
    const QString server = QStringLiteral("https://home.example");
    for (const QString &text : {QString(), QStringLiteral("nimbrelle://sync?"),
             QStringLiteral("nimbrelle://sync? \n"), QStringLiteral("server=https://a&token=b&pin=c"),
             code(QStringLiteral("http://home.example")), code(QStringLiteral("HTTPS://home.example")),
             code(QStringLiteral("home.example")), code(QStringLiteral("https://a%0Ab")),
             code(QStringLiteral("https://a%20b")), code(server, token.chopped(1)),
             code(server, token, pin.chopped(1)), code(server, token, pin + u'a'),
             code(server).replace(QStringLiteral("pin="), QStringLiteral("Pin="))})
        EXPECT_EQ(SyncLink::fromText(text), std::nullopt) << text.toStdString();
}

TEST(SyncLink, CountsCharactersAsReadersSeeThem)
{
    const QString family = QStringLiteral("👨‍👩‍👧‍👦");
    EXPECT_TRUE(SyncLink::fromText(code(QStringLiteral("https://a"), family.repeated(16))));
    EXPECT_FALSE(SyncLink::fromText(code(QStringLiteral("https://a"), family.repeated(15))));
}

TEST(SyncLink, TakesTheServerAsItStands)
{
    EXPECT_EQ(serverOf(QStringLiteral("https://a/")), QStringLiteral("https://a"));
    EXPECT_EQ(serverOf(QStringLiteral("https://a//")), QStringLiteral("https://a/"));
    EXPECT_EQ(serverOf(QStringLiteral("https://Home.Example/a/../b%2Fc/")),
        QStringLiteral("https://Home.Example/a/../b/c"));
    EXPECT_EQ(serverOf(QStringLiteral("https%3A%2F%2F%5B::1%5D:8443")), QStringLiteral("https://[::1]:8443"));
}

TEST(SyncLink, DecodesValuesOnlyWhereTheyCanBe)
{
    const auto tokenOf = [](const QString &text) {
        return SyncLink::fromText(code(QStringLiteral("https://a"), text)).value_or(SyncLink{}).token;
    };
    const QString filler = QStringLiteral("0123456789abcdef");
    const auto expectDecoded = [&](const QString &raw, const QString &decoded) {
        EXPECT_EQ(tokenOf(filler + raw), filler + decoded);
    };
    expectDecoded(QStringLiteral("a+b=c=="), QStringLiteral("a+b=c=="));
    expectDecoded(QStringLiteral("%26%3d%25%E5%AF%86"), QStringLiteral("&=%密"));
    expectDecoded(QStringLiteral("%EF%BB%BF"), QStringLiteral("\ufeff"));
    for (const char *broken : {"%", "%2", "%zz%41", "%41%", "%FF%41", "%C3", "%ED%A0%80"})
        expectDecoded(QString::fromLatin1(broken), QString::fromLatin1(broken));
}

TEST(SyncLink, TextReadsBackAsTheSameLink)
{
    const SyncLink link{
        QStringLiteral("https://例子.example:8443/a b?c"), QStringLiteral("a+&=? %/密码🔑0123456789"), pin};
    EXPECT_TRUE(link.text().startsWith(QStringLiteral("nimbrelle://sync?server=https://%E4%BE%8B")))
        << link.text().toStdString();
    EXPECT_TRUE(link.text().contains(QStringLiteral("&token=a+%26%3D%3F%20%25/")));
    SyncLink plain = link;
    plain.server = QStringLiteral("https://home.example:8443/notebook");
    EXPECT_EQ(SyncLink::fromText(plain.text()), plain);
    EXPECT_EQ(SyncLink::fromText(plain.text().replace(pin, pin.toUpper())), plain);
}

TEST(SyncLink, OfTheSettingsNeedsAllThree)
{
    AppConfig config;
    config.syncServer = QStringLiteral("https://home.example");
    config.syncToken = QStringLiteral("short");
    config.syncPin = QStringLiteral("anything");
    EXPECT_TRUE(SyncLink::fromConfig(config));
    for (const auto field : {&AppConfig::syncServer, &AppConfig::syncToken, &AppConfig::syncPin}) {
        AppConfig lacking = config;
        (lacking.*field).clear();
        EXPECT_EQ(SyncLink::fromConfig(lacking), std::nullopt);
    }
}

TEST(SyncLink, NamesItsHostOrElseTheWholeServer)
{
    EXPECT_EQ((SyncLink{QStringLiteral("https://home.example:8443/x"), {}, {}}).host(),
        QStringLiteral("home.example"));
    EXPECT_EQ((SyncLink{QStringLiteral("https:"), {}, {}}).host(), QStringLiteral("https:"));
}

} // namespace
