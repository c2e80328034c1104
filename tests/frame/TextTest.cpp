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

TEST(Text, RemovesWhatCouldMakeALineSaySomethingElse)
{
    const QString text =
        u"a\x00\t\r\n\u0085b\u2028\u2029\u202Efdp.exe\u202C \u200E\u200F\u061C\u2066译\u2069👨\u200D👩"_s;
    EXPECT_EQ(withoutControls(text), u"abfdp.exe 译👨\u200D👩"_s);
}

TEST(Text, HidesASecretHoweverItIsRepeated)
{
    const QString secret = u"sk-a/b+c"_s;
    EXPECT_EQ(withoutSecret(u"key sk-a/b+c, \"sk-a\\/b+c\", sk-a/b+cd"_s, secret), u"key …, \"…\", …d"_s);
    EXPECT_EQ(
        withoutSecret(u"{\"got\":\"Bearer sk-a/b+c\"} bearer  other"_s, secret), u"{\"got\":\"…\"} …"_s);
    EXPECT_EQ(withoutSecret(u"nothing, forbearer"_s, QString()), u"nothing, forbearer"_s);
}

} // namespace
