#include "screen/SelectionKind.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// The kind with the text as the card gets it.
QString classified(const QString &text)
{
    const SelectionKind kind = SelectionKind::classify(text);
    const QString names[]{u"word "_s, u"passage "_s, u"ignored"_s};
    return names[static_cast<int>(kind.kind)] + kind.text;
}

} // namespace

TEST(SelectionKind, AWordHasUpToFivePiecesAndSixtyCharacters)
{
    EXPECT_EQ(classified(u"a b c d ee"_s), u"word a b c d ee"_s);
    EXPECT_EQ(classified(u"  a b c d e ff.\n"_s), u"passage a b c d e ff."_s);
    EXPECT_EQ(classified(QString(60, u'a')), u"word "_s + QString(60, u'a'));
    EXPECT_EQ(classified(QString(61, u'a')), u"passage "_s + QString(61, u'a'));
}

TEST(SelectionKind, AWordLosesThePunctuationRoundIt)
{
    EXPECT_EQ(classified(u"  Hello, "_s), u"word Hello"_s);
    EXPECT_EQ(classified(u"“wouldn't” $"_s), u"word wouldn't"_s);
    EXPECT_EQ(classified(u"\U0001F600 cafe\u0301 \U0001F600"_s), u"word cafe\u0301"_s);
}

TEST(SelectionKind, APassageHasUpToFourThousandCharactersAsAReaderSeesThem)
{
    const QString longest = u"wor\u0301d "_s.repeated(799) + u"words"_s;
    EXPECT_EQ(classified(longest), u"passage "_s + longest);
    EXPECT_EQ(classified(longest + u'!'), u"ignored"_s);
}

TEST(SelectionKind, WhatIsNoEnglishIsIgnored)
{
    for (const QString &text : {u" \n\t\u00a0 "_s, u"An English text with one 字 in it, and more"_s,
             u"rare \U00020000 sign"_s, u"see https://example.org for more"_s, u"www.example.org"_s,
             u"me@example.org"_s, u"..."_s, u"a"_s, u"ab12"_s})
        EXPECT_EQ(classified(text), u"ignored"_s) << text.toStdString();
    for (const QString &text : {u"the www. prefix"_s, u"write to me@example.org today"_s, u"abc12"_s})
        EXPECT_EQ(classified(text), u"word "_s + text);
}

} // namespace nimbrelle
