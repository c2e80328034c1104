#include "frame/InlineMarkdown.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// Runs as text: [b:bold] [i:italic] [s:struck] [c:code] [l:link>address], letters combined.
QString shown(const char *text)
{
    QString result;
    for (const StyledRun &run : inlineMarkdown(QString::fromUtf8(text))) {
        QString marks;
        for (const auto &[isOn, mark] : {std::pair(run.style.bold, u'b'), {run.style.italic, u'i'},
                 {run.style.struck, u's'}, {run.style.code, u'c'}, {!run.style.link.isEmpty(), u'l'}}) {
            if (isOn)
                marks += mark;
        }
        const QString address = run.style.link.isEmpty() ? QString() : u'>' + run.style.link;
        result += marks.isEmpty() ? run.text : u'[' + marks + u':' + run.text + address + u']';
    }
    return result;
}

} // namespace

TEST(InlineMarkdown, StylesWhatIsMarked)
{
    const std::pair<const char *, const char *> cases[]{{"", ""},
        {"__bold__ _it_ *it*", "[b:bold] [i:it] [i:it]"}, {"***both***", "[bi:both]"},
        {"**a *b* c**", "[b:a ][bi:b][b: c]"}, {"*a **b***", "[i:a ][bi:b]"},
        {"~~gone~~ ~kept~", "[s:gone] ~kept~"}, {"use `would **not**` here", "use [c:would **not**] here"},
        {"`` a`b ``", "[c:a`b]"},
        {"see [the **page**](https://e.org/a_b \"t\")",
            "see [l:the >https://e.org/a_b][bl:page>https://e.org/a_b]"},
        {"\\*not\\* \\a \\\\", "*not* \\a \\"}, {"**two\nlines**", "[b:two\nlines]"}};
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(shown(text), QString::fromUtf8(expected)) << text;
}

TEST(InlineMarkdown, LeavesEverythingElseAsItStands)
{
    for (const char *text : {"- one\n- two\n  - three", "# no heading", "* item\n* item", "a  b\t c\n\n\nd",
             "2 * 3 * 4", "some_snake_case_name", "5 ** 2", "an `open tick", "**open", "open**", "[no link]",
             "[no](", "[](x", "a ] b", "<b>x</b>", "****", "__", "`", "[", "\\", "| a | b |"})
        EXPECT_EQ(shown(text), QString::fromUtf8(text));
}

TEST(InlineMarkdown, KnowsThatChineseHasNoBlanksRoundWords)
{
    const std::pair<const char *, const char *> cases[]{{"**结论：**这里用的是", "[b:结论：]这里用的是"},
        {"它表示**「勉强」**的意思", "它表示[b:「勉强」]的意思"}, {"是**“ngl”**的缩写", "是[b:“ngl”]的缩写"},
        {"用**would**而不是**will**。", "用[b:would]而不是[b:will]。"}};
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(shown(text), QString::fromUtf8(expected)) << text;
}

TEST(InlineMarkdown, AGrowingTextLosesNothingOnTheWay)
{
    const QString text = u"**a** `b` [c](d) ~~e~~ *f **g** h* \\* \U0001F600 _i_ **终"_s;
    for (qsizetype length = 0; length <= text.size(); ++length) {
        QString letters;
        for (const StyledRun &run : inlineMarkdown(text.left(length)))
            letters += run.text;
        for (const QChar c : u"abcefghi终"_s)
            EXPECT_EQ(letters.contains(c), text.left(length).contains(c)) << length;
    }
}

TEST(InlineMarkdown, TakesAnyHeapOfMarks)
{
    for (const char *piece : {"*", "*a", "a*", "**a*", "_*~`[", "[a](", "](", "*_a_"}) {
        const QString text = QString::fromUtf8(piece).repeated(2000);
        EXPECT_FALSE(inlineMarkdown(text).isEmpty()) << piece;
    }
}

} // namespace nimbrelle
