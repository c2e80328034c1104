#include "sync/SyncLink.h"

#include "frame/AppConfig.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

const QString pin(64, u'a');
const QString token = u"0123456789abcdef"_s;

QString code(const QString &server, const QString &itsToken = token, const QString &itsPin = pin)
{
    return u"nimbrelle://sync?server=%1&token=%2&pin=%3"_s.arg(server, itsToken, itsPin);
}

std::optional<QString> serverOf(const QString &server)
{
    const auto link = SyncLink::fromText(code(server));
    return link ? std::optional(link->server) : std::nullopt;
}

TEST(SyncLink, IsFoundInWhateverTheServerPrinted)
{
    const QString link = code(u"https://home.example:8443"_s);
    const SyncLink expected{u"https://home.example:8443"_s, token, pin};
    EXPECT_EQ(SyncLink::fromText(link), expected);
    EXPECT_EQ(SyncLink::fromText(u"同步码：\n"_s + link + u"\u3000请保存好"_s), expected);
    EXPECT_EQ(SyncLink::fromText(QString(link).replace(0, 17, u"NIMBRELLE://SYNC?"_s)), expected);
    EXPECT_EQ(SyncLink::fromText(QString(link).insert(17, u" \t"_s)), expected);
    EXPECT_EQ(SyncLink::fromText(link + u"&pin=x&&token=later"_s), expected);
    EXPECT_EQ(SyncLink::fromText(QString(link).replace(u'?', u"?pin=&=x&novalue&"_s)), expected);
}

TEST(SyncLink, IsNothingWhenAnyPartIsNoGood)
{
    const QString server = u"https://home.example"_s;
    for (const QString &text : {QString(), u"nimbrelle://sync?"_s, u"nimbrelle://sync? \n"_s,
             u"server=https://a&token=b&pin=c"_s, code(u"http://home.example"_s),
             code(u"HTTPS://home.example"_s), code(u"home.example"_s), code(u"https://a%0Ab"_s),
             code(u"https://a%20b"_s), code(server, token.chopped(1)), code(server, token, pin.chopped(1)),
             code(server, token, pin + u'a'), code(server).replace(u"pin="_s, u"Pin="_s)})
        EXPECT_EQ(SyncLink::fromText(text), std::nullopt) << text.toStdString();
}

TEST(SyncLink, CountsCharactersAsReadersSeeThem)
{
    const QString family = u"👨‍👩‍👧‍👦"_s;
    EXPECT_TRUE(SyncLink::fromText(code(u"https://a"_s, family.repeated(16))));
    EXPECT_FALSE(SyncLink::fromText(code(u"https://a"_s, family.repeated(15))));
}

TEST(SyncLink, TakesTheServerAsItStands)
{
    EXPECT_EQ(serverOf(u"https://a/"_s), u"https://a"_s);
    EXPECT_EQ(serverOf(u"https://a//"_s), u"https://a/"_s);
    EXPECT_EQ(serverOf(u"https://Home.Example/a/../b%2Fc/"_s), u"https://Home.Example/a/../b/c"_s);
    EXPECT_EQ(serverOf(u"https%3A%2F%2F%5B::1%5D:8443"_s), u"https://[::1]:8443"_s);
}

TEST(SyncLink, DecodesValuesOnlyWhereTheyCanBe)
{
    const auto tokenOf = [](const QString &text) {
        return SyncLink::fromText(code(u"https://a"_s, text)).value_or(SyncLink{}).token;
    };
    const QString filler = u"0123456789abcdef"_s;
    const auto expectDecoded = [&](const QString &raw, const QString &decoded) {
        EXPECT_EQ(tokenOf(filler + raw), filler + decoded);
    };
    expectDecoded(u"a+b=c=="_s, u"a+b=c=="_s);
    expectDecoded(u"%26%3d%25%E5%AF%86"_s, u"&=%密"_s);
    expectDecoded(u"%EF%BB%BF"_s, u"\ufeff"_s);
    for (const char *broken : {"%", "%2", "%zz%41", "%41%", "%FF%41", "%C3", "%ED%A0%80"})
        expectDecoded(QString::fromLatin1(broken), QString::fromLatin1(broken));
}

TEST(SyncLink, TextReadsBackAsTheSameLink)
{
    const SyncLink link{u"https://例子.example:8443/a b?c"_s, u"a+&=? %/密码🔑0123456789"_s, pin};
    EXPECT_TRUE(link.text().startsWith(u"nimbrelle://sync?server=https://%E4%BE%8B"_s))
        << link.text().toStdString();
    EXPECT_TRUE(link.text().contains(u"&token=a+%26%3D%3F%20%25/"_s));
    SyncLink plain = link;
    plain.server = u"https://home.example:8443/notebook"_s;
    EXPECT_EQ(SyncLink::fromText(plain.text()), plain);
    EXPECT_EQ(SyncLink::fromText(plain.text().replace(pin, pin.toUpper())), plain);
}

TEST(SyncLink, OfTheSettingsNeedsAllThree)
{
    AppConfig config;
    config.syncServer = u"https://home.example"_s;
    config.syncToken = u"short"_s;
    config.syncPin = u"anything"_s;
    config.syncPin = QString(64, u'A');
    EXPECT_EQ(SyncLink::fromConfig(config)->pin, QString(64, u'a')) << "as it is compared";
    for (const auto field : {&AppConfig::syncServer, &AppConfig::syncToken, &AppConfig::syncPin}) {
        AppConfig lacking = config;
        (lacking.*field).clear();
        EXPECT_EQ(SyncLink::fromConfig(lacking), std::nullopt);
    }
}

TEST(SyncLink, NamesItsHostOrElseTheWholeServer)
{
    EXPECT_EQ((SyncLink{u"https://home.example:8443/x"_s, {}, {}}).host(), u"home.example"_s);
    EXPECT_EQ((SyncLink{u"https:"_s, {}, {}}).host(), u"https:"_s);
}

} // namespace
