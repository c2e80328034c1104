#include "shell/MenuBarText.h"

#include "support/Printers.h"
#include "support/Words.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

QString highlighted(const WordEntry &word, const QString &text)
{
    const auto range = MenuBarText::highlightRange(word, text);
    return range ? text.mid(range->start, range->length) : u"none"_s;
}

TEST(MenuBarText, ShortensLongTitles)
{
    EXPECT_EQ(MenuBarText::title(u"1234567890123456"_s), u"1234567890123456"_s);
    EXPECT_EQ(MenuBarText::title(u"12345678901234567"_s), u"123456789012345…"_s);
    EXPECT_EQ(MenuBarText::title(u"cafe\u0301 cafe\u0301 cafes"_s), u"cafe\u0301 cafe\u0301 cafes"_s);
}

TEST(MenuBarText, TakesTheLatestSentenceMet)
{
    const auto at = [](int seconds) { return Timestamp{std::chrono::seconds{seconds}}; };
    WordEntry word = wordNamed(u"run"_s);
    EXPECT_EQ(MenuBarText::sentence(word), std::nullopt);
    EXPECT_EQ(MenuBarText::sentenceTitle(word), std::nullopt);
    word.examples = {exampleOf(u"older"_s, Origin::met, at(1)), exampleOf(u"latest"_s, Origin::met, at(3)),
        exampleOf(u"as late"_s, Origin::met, at(3)), exampleOf(u"made"_s, Origin::generated, at(9))};
    EXPECT_EQ(MenuBarText::sentence(word), u"latest"_s);
    word.examples = {
        exampleOf(u"made"_s, Origin::generated, at(9)), exampleOf(QString(), Origin::generated, at(10))};
    EXPECT_EQ(MenuBarText::sentence(word), QString()) << "the latest, empty or not";
}

TEST(MenuBarText, FillsLinesGreedily)
{
    struct Sample {
        QString text;
        QString wrapped;
    };
    const Sample samples[]{{u"aaa bb c"_s, u"aaa\nbb c"_s}, {u"  aa   bb "_s, u"aa\nbb"_s},
        {u"aa b"_s, u"aa b"_s}, {u"aaa b"_s, u"aaa\nb"_s}, {u"b abcdefghi c"_s, u"b\nabcd\nefgh\ni c"_s},
        {u"abcdefgh"_s, u"abcd\nefgh"_s}, {QString(), QString()}, {u"   "_s, QString()},
        {u"一二三四五"_s, u"一二三四\n五"_s},
        {u"e\u0301e\u0301e\u0301e\u0301x"_s, u"e\u0301e\u0301e\u0301e\u0301\nx"_s},
        {u"a \u0301b c"_s, u"a \u0301b\nc"_s}};
    for (const Sample &sample : samples)
        EXPECT_EQ(MenuBarText::wrap(sample.text, 4), sample.wrapped) << sample.text.toStdString();
    EXPECT_EQ(MenuBarText::wrap(u"ab"_s, 0), u"a\nb"_s);
}

TEST(MenuBarText, HighlightsTheLongestFormWherever)
{
    WordEntry run = wordNamed(u"run"_s);
    run.inflections = {{u"ing"_s, u"running"_s}};
    run.forms = {
        {FormKind::past, u"ran"_s, Timestamp{}, 1, {}}, {FormKind::plural, QString(), Timestamp{}, 1, {}}};
    EXPECT_EQ(highlighted(run, u"She ran, always running."_s), u"running"_s);
    EXPECT_EQ(highlighted(run, u"She ran."_s), u"ran"_s);
    EXPECT_EQ(highlighted(run, u"She runs."_s), u"none"_s) << "too short for its stem";
    EXPECT_EQ(highlighted(wordNamed(u"give up on"_s), u"never give\nup on it"_s), u"give\nup on"_s);
}

TEST(MenuBarText, FallsBackToTheStem)
{
    const WordEntry deprecate = wordNamed(u"Deprecate"_s);
    EXPECT_EQ(highlighted(deprecate, u"This is Deprecated."_s), u"Deprecated"_s);
    EXPECT_EQ(highlighted(deprecate, u"undeprecated"_s), u"none"_s);
    EXPECT_EQ(highlighted(wordNamed(u"walk"_s), u"walking"_s), u"walking"_s);
    EXPECT_EQ(highlighted(wordNamed(u"give up"_s), u"give upon"_s), u"none"_s);
    EXPECT_EQ(highlighted(wordNamed(QString()), u"text"_s), u"none"_s);
}

} // namespace
