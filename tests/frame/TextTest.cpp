#include "frame/Text.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

TEST(Text, CountsAndCutsWhatAReaderSees)
{
    const QString family = QString::fromUtf8("👨‍👩‍👧‍👦"), flag = QString::fromUtf8("🇨🇳"),
                  e = QString::fromUtf8("e\u0301");
    const QString text =
        QStringLiteral("a") + family + flag + e + QStringLiteral("\r\n") + QStringLiteral("译");
    EXPECT_EQ(characterCount(text), 6);
    EXPECT_EQ(characters(text),
        (QStringList{QStringLiteral("a"), family, flag, e, QStringLiteral("\r\n"), QStringLiteral("译")}));
    EXPECT_EQ(firstCharacters(text, 3), QStringLiteral("a") + family + flag);
    EXPECT_EQ(firstCharacters(text, 4), QStringLiteral("a") + family + flag + e);
    EXPECT_EQ(firstCharacters(text, 99), text);
    EXPECT_EQ(firstCharacters(text, 0), QString());
    EXPECT_EQ(characterCount(u""), 0);
    EXPECT_EQ(characterCount(u"plain\n"), 6);
    EXPECT_EQ(characterCount(u"a\r\nb"), 3);
}

TEST(Text, TrimsInThreeWays)
{
    const QString text = QString::fromUtf8("\n\t \u3000 a b\u00a0\t\n");
    EXPECT_EQ(trimmedBlanks(text), text);
    EXPECT_EQ(trimmedBlanks(text.mid(1).chopped(1)), QStringLiteral("a b"));
    EXPECT_EQ(trimmedSpace(text), QStringLiteral("a b"));
    EXPECT_EQ(trimmedOf(QStringLiteral("- -able- -"), u"- "), QStringLiteral("able"));
    EXPECT_EQ(trimmedBlanks(QStringLiteral(" \t ")), QString());
}

} // namespace
