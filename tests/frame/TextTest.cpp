#include "frame/Text.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

TEST(Text, CountsAndCutsWhatAReaderSees)
{
    const QString family = QString::fromUtf8("👨‍👩‍👧‍👦"), flag = QString::fromUtf8("🇨🇳"),
                  e = QString::fromUtf8("e\u0301");
    const QString text = u"a"_s + family + flag + e + u"\r\n"_s + u"译"_s;
    EXPECT_EQ(characterCount(text), 6);
    EXPECT_EQ(characters(text), (QStringList{u"a"_s, family, flag, e, u"\r\n"_s, u"译"_s}));
    EXPECT_EQ(firstCharacters(text, 3), u"a"_s + family + flag);
    EXPECT_EQ(firstCharacters(text, 4), u"a"_s + family + flag + e);
    EXPECT_EQ(firstCharacters(text, 99), text);
    EXPECT_EQ(characterCount(u"a\r\nb"), 3);
}

TEST(Text, TrimsInThreeWays)
{
    const QString text = QString::fromUtf8("\n\t \u3000 a b\u00a0\t\n");
    EXPECT_EQ(trimmedBlanks(text), text);
    EXPECT_EQ(trimmedBlanks(text.mid(1).chopped(1)), u"a b"_s);
    EXPECT_EQ(trimmedSpace(text), u"a b"_s);
    EXPECT_EQ(trimmedOf(u"- -able- -"_s, u"- "), u"able"_s);
}

} // namespace
