#include "frame/WordPattern.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using WordPattern::Blanks;

namespace {

QString found(const QString &word, const QString &text, Blanks blanks = Blanks::asWritten)
{
    const auto range = WordPattern::firstMatch(WordPattern::whole(word, blanks), text);
    return range ? text.mid(range->start, range->length) : u"none"_s;
}

TEST(WordPattern, FindsWholeWordsInAnyCase)
{
    EXPECT_EQ(found(u"run"_s, u"He runs. Run, run!"_s), u"Run"_s);
    EXPECT_EQ(found(u"run"_s, u"rerun runs run_time run2"_s), u"none"_s);
    EXPECT_EQ(found(u"ÉTÉ"_s, u"un été"_s), u"été"_s);
    EXPECT_EQ(found(u"a.c"_s, u"abc a.c"_s), u"a.c"_s) << "signs stand for themselves";
}

TEST(WordPattern, HoldsABoundaryWhereASignMeetsALetter)
{
    EXPECT_EQ(found(u"C++"_s, u"I like C++ a lot"_s), u"none"_s);
    EXPECT_EQ(found(u"C++"_s, u"I like C++11 a lot"_s), u"C++"_s);
    EXPECT_EQ(found(u".NET"_s, u"use .NET"_s), u"none"_s);
    EXPECT_EQ(found(u".NET"_s, u"ASP.NET"_s), u".NET"_s);
}

TEST(WordPattern, CountsCombiningMarksAsPartOfTheWord)
{
    EXPECT_EQ(found(u"cafe"_s, u"a cafe\u0301 and a cafe"_s), u"cafe"_s);
    EXPECT_EQ(found(u"cafe\u0301"_s, u"a cafe\u0301 here"_s), u"cafe\u0301"_s);
}

TEST(WordPattern, NeverCutsACharacterInTwo)
{
    const QString technologist = u"👩\u200d💻"_s;
    EXPECT_EQ(found(u"👩"_s, u"a"_s + technologist + u"b"_s), u"none"_s);
    EXPECT_EQ(found(u"💻"_s, u"a"_s + technologist + u"b, x💻y"_s), u"💻"_s) << "a later match may be whole";
    const QString loneSurrogate(QChar(0xd83d));
    EXPECT_EQ(found(loneSurrogate, u"a😀b"_s), u"none"_s);
}

TEST(WordPattern, LetsABlankStandForAnySpaceIfToldSo)
{
    EXPECT_EQ(found(u"give up"_s, u"give\nup"_s), u"none"_s);
    EXPECT_EQ(found(u"give up"_s, u"give \n up"_s, Blanks::anySpace), u"give \n up"_s);
    EXPECT_EQ(found(u"give up"_s, u"giveup"_s, Blanks::anySpace), u"none"_s);
}

TEST(WordPattern, ReachesToTheEndOfAWordFromItsStem)
{
    const QString text = u"It is undeprecated, Deprecated\u0301s_1 now"_s;
    const auto range = WordPattern::firstMatch(WordPattern::beginningWith(u"deprecat"_s), text);
    ASSERT_TRUE(range);
    EXPECT_EQ(text.mid(range->start, range->length), u"Deprecated\u0301s_1"_s);
}

TEST(WordPattern, FindsEachWholeWordOnceWhereverItStands)
{
    const auto places = [](const QString &text, const QStringList &terms) {
        QString marked = text;
        const auto ranges = WordPattern::wholeOccurrences(text, terms);
        for (auto range = ranges.crbegin(); range != ranges.crend(); ++range)
            marked.replace(range->start, range->length, u'<' + text.mid(range->start, range->length) + u'>');
        return marked;
    };
    EXPECT_EQ(places(u"Run, rerun; he ran run_time RUN"_s, {u"ran"_s, u"run"_s}),
        u"<Run>, rerun; he <ran> run_time <RUN>"_s);
    EXPECT_EQ(
        places(u"I give up, give it"_s, {u"give"_s, u"give up"_s, u"up"_s}), u"I <give up>, <give> it"_s);
    EXPECT_EQ(places(u"re re\u0301 𝐚re re"_s, {u"re"_s}), u"<re> re\u0301 𝐚re <re>"_s)
        << "marks and letters beyond the first plane belong to a word";
    EXPECT_EQ(places(u"C++ is C++11, std::"_s, {u"C++"_s, u"std::"_s, u" "_s, u""_s}),
        u"<C++> is <C++>11, <std::>"_s);
}

} // namespace
