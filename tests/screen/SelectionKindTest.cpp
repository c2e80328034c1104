#include "screen/SelectionKind.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

namespace {

using Kind = SelectionKind::Kind;

struct Case {
    QString text;
    SelectionKind expected;
};

void PrintTo(const Case &c, std::ostream *out)
{
    *out << c.text.left(40).toStdString();
}

SelectionKind word(const char *text)
{
    return {Kind::word, QString::fromUtf8(text)};
}

SelectionKind passage(const QString &text)
{
    return {Kind::passage, text};
}

const SelectionKind ignored{};

Case as(const char *text, const SelectionKind &expected)
{
    return {QString::fromUtf8(text), expected};
}

Case wholePassage(const QString &text)
{
    return {text, passage(text)};
}

QString repeated(const char *piece, int times)
{
    return QString::fromUtf8(piece).repeated(times);
}

} // namespace

class SelectionKindTest : public testing::TestWithParam<Case> { };

TEST_P(SelectionKindTest, Classifies)
{
    const SelectionKind kind = SelectionKind::classify(GetParam().text);
    EXPECT_EQ(kind.kind, GetParam().expected.kind);
    EXPECT_EQ(kind.text, GetParam().expected.text);
}

INSTANTIATE_TEST_SUITE_P(Length, SelectionKindTest,
    testing::Values(as("", ignored), as(" \n\t\u00a0 ", ignored),
        wholePassage(repeated("word ", 799) + QStringLiteral("words")),
        Case{repeated("word ", 799) + QStringLiteral("words!"), ignored},
        // Characters as a reader sees them: this one is of two code points.
        wholePassage(repeated("e\u0301 ", 1999) + QStringLiteral("e\u0301!")),
        Case{repeated("a", 60), word(std::string(60, 'a').c_str())}, wholePassage(repeated("a", 61)),
        as("a b c d ee", word("a b c d ee")), wholePassage(QStringLiteral("a b c d e ff")),
        as("  one two three four five six.\n", passage(QStringLiteral("one two three four five six.")))));

INSTANTIATE_TEST_SUITE_P(Content, SelectionKindTest,
    testing::Values(as("放弃", ignored), as("An English text with one 字 in it, and more", ignored),
        as("rare \U00020000 sign", ignored), as("naïve", word("naïve")), as("cafe\u0301", word("cafe\u0301")),
        as("see https://example.org for more", ignored), as("www.example.org", ignored),
        as("the www. prefix", word("the www. prefix")), as("me@example.org", ignored),
        as("@someone", ignored), as("write to me@example.org today", word("write to me@example.org today")),
        as("...", ignored), as("a", ignored), as("12 34 a", ignored), as("ab12", ignored),
        as("abc12", word("abc12"))));

INSTANTIATE_TEST_SUITE_P(Trimming, SelectionKindTest,
    testing::Values(as("  Hello, ", word("Hello")), as("give up on", word("give up on")),
        as("“wouldn't” $", word("wouldn't")), as("\U0001F600 wells \U0001F600", word("wells"))));

} // namespace nimbrelle
