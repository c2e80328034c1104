#include "screen/ScreenOCR.h"

#include "support/Await.h"
#include "support/FakeDesktop.h"
#include "support/FakeRecognition.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using Seek = ScreenOCR::Seek;
using Line = ScreenOCR::Line;

namespace {

RecognizedLine raw(const char *text, const QRectF &box)
{
    return FakeTextRecognizer::line(QString::fromUtf8(text), box);
}

Line line(const char *text, const QRectF &box)
{
    return ScreenOCR::linesFrom({raw(text, box)}).first();
}

QString wordsOf(const char *text)
{
    QStringList words;
    for (const ScreenOCR::Word &word : line(text, {0, 0, 1, 0.1}).words)
        words.append(word.text);
    return words.join(u'|');
}

std::optional<QString> wordAt(const QList<Line> &lines, QPointF cursor)
{
    const auto result = ScreenOCR::analyze(lines, cursor, Seek::word);
    return result ? result->word : std::nullopt;
}

QString contextAt(const QList<Line> &lines, QPointF cursor)
{
    return ScreenOCR::analyze(lines, cursor, Seek::contextOnly).value().context;
}

} // namespace

TEST(ScreenOCR, MendsBarsThatCanOnlyBeLetters)
{
    const std::pair<const char *, const char *> cases[]{{"He||o", "Hello"}, {"a | b", "a | b"},
        {"|ate", "late"}, {"|Ate", "|Ate"}, {"fu||", "ful|"}, {"1|2", "1|2"}};
    for (const auto &[from, to] : cases)
        EXPECT_EQ(ScreenOCR::cleaned(QString::fromUtf8(from)), QString::fromUtf8(to)) << from;
}

TEST(ScreenOCR, CutsLinesIntoWords)
{
    EXPECT_EQ(wordsOf("Don't stop, well-known foo_bar (it’s)!"),
        QStringLiteral("Don't|stop|well|known|foo|bar|it’s"));
    EXPECT_EQ(wordsOf("'quoted' cafe\u0301 a1 — $5"), QStringLiteral("quoted|cafe\u0301|a1|5"));
}

TEST(ScreenOCR, BoxesAWordWithoutThePunctuationRoundIt)
{
    const Line made = line("a |ost, one", {0, 0.5, 0.55, 0.1}); // each character is 0.05 wide
    ASSERT_EQ(made.words.size(), 3);
    EXPECT_EQ(made.words[1].text, QStringLiteral("lost"));
    EXPECT_NEAR(made.words[1].box.x(), 0.1, 1e-9);
    EXPECT_NEAR(made.words[1].box.width(), 0.2, 1e-9);
}

TEST(ScreenOCR, JoinsLinesAndMendsASplitWord)
{
    EXPECT_EQ(ScreenOCR::join({line("take a look at some-", {}), line("thing new", {}), line("today", {})}),
        QStringLiteral("take a look at something new today"));
}

TEST(ScreenOCR, FindsTheWordUnderTheCursor)
{
    // Words and gaps of 0.1 each: [0.1 0.2] [0.3 0.4] and so on.
    QList<Line> lines{{QStringLiteral("one 2024 a1 字"), {0.1, 0.5, 0.7, 0.1}, {}}};
    for (const QString &text : lines[0].text.split(u' '))
        lines[0].words.append(
            {text, {0.1 + 0.2 * static_cast<double>(lines[0].words.size()), 0.5, 0.1, 0.1}});
    const std::pair<QPointF, std::optional<QString>> cases[]{
        {{0.15, 0.55}, QStringLiteral("one")},
        {{0.2149, 0.55}, QStringLiteral("one")}, // between two words, near to one
        {{0.2151, 0.55}, std::nullopt},
        {{0.35, 0.55}, std::nullopt}, // a number is no word
        {{0.55, 0.55}, QStringLiteral("a1")},
        {{0.75, 0.55}, std::nullopt},
        {{0.15, 0.609}, QStringLiteral("one")}, // a hair above the line
        {{0.15, 0.611}, std::nullopt},
    };
    for (const auto &[cursor, expected] : cases)
        EXPECT_EQ(wordAt(lines, cursor), expected) << cursor.x() << ' ' << cursor.y();
    EXPECT_EQ(ScreenOCR::analyze(lines, {0.55, 0.55}, Seek::word)->wordRect, QRectF(0.5, 0.5, 0.1, 0.1));
    lines[0].words.clear();
    EXPECT_EQ(wordAt(lines, {0.15, 0.55}), std::nullopt);
    EXPECT_EQ(wordAt({}, {0.15, 0.55}), std::nullopt);
}

TEST(ScreenOCR, GivesTheContextWhereverTheCursorIs)
{
    const QList<Line> lines{line("left words", {0.0, 0.5, 0.2, 0.1}),
        line("right words", {0.6, 0.5, 0.4, 0.1}), line("far below", {0.0, 0.0, 0.2, 0.1})};
    const auto result = ScreenOCR::analyze(lines, {0.55, 0.99}, Seek::contextOnly);
    EXPECT_EQ(
        result, (ScreenOCR::Result{{}, QStringLiteral("right words"), {}})); // of one height, the nearer
    EXPECT_EQ(contextAt(lines, {0.25, 0.99}), QStringLiteral("left words"));
    EXPECT_EQ(contextAt(lines, {0.95, 0.05}), QStringLiteral("far below")); // height counts first
    EXPECT_FALSE(ScreenOCR::analyze({}, {0.5, 0.5}, Seek::contextOnly));
}

TEST(ScreenOCR, ContextKeepsToTheParagraphAndItsColumn)
{
    const QList<Line> lines{
        line("too far above", {0.1, 0.86, 0.3, 0.1}), // middles 0.36 apart, more than 3.5 heights
        line("third", {0.1, 0.4, 0.3, 0.1}),
        line("right part", {0.3, 0.505, 0.2, 0.1}), // of one row: a little higher, but further right
        line("second,", {0.1, 0.5, 0.15, 0.1}),
        line("first", {0.1, 0.6, 0.3, 0.1}),
        line("sidebar", {0.56, 0.5, 0.3, 0.1}),
    };
    EXPECT_EQ(ScreenOCR::analyze(lines, {0.11, 0.55}, Seek::word)->context, // the anchor is "second,"
        QStringLiteral("first second, right part third"));
    // The band ends 0.05 beside the anchor, and its ends belong to it.
    const QList<Line> flat{line("anchor", {0.25, 0.5, 0.25, 0.0}), line("right end", {0.55, 0.5, 0.1, 0.0}),
        line("left end", {0.0, 0.5, 0.2, 0.0}), line("beyond", {0.0, 0.5, 0.19, 0.0}),
        line("below", {0.25, 0.431, 0.1, 0.0}), line("too low", {0.25, 0.429, 0.1, 0.0})};
    EXPECT_EQ(contextAt(flat, {0.3, 0.5}), QStringLiteral("left end anchor right end below"));
}

TEST(ScreenOCR, ReadsARegionRowByRow)
{
    const QList<Line> ordered = ScreenOCR::inReadingOrder({line("d", {0.1, 0.1, 0.1, 0.1}),
        line("b", {0.5, 0.52, 0.1, 0.1}), line("a", {0.1, 0.5, 0.1, 0.1}), line("c", {0.1, 0.44, 0.1, 0.1})});
    EXPECT_EQ(ScreenOCR::join(ordered), QStringLiteral("a b c d"));
}

class ScreenOCRRoad : public testing::Test {
protected:
    std::optional<ScreenOCR::Result> recognize(QPointF at, Seek seek = Seek::word)
    {
        return await(ocr.recognize(at, seek, stop.get_token()));
    }
    std::optional<QString> textIn(const QRectF &rect)
    {
        return await(ocr.recognizeText(rect, stop.get_token()));
    }

    ManualClock clock;
    FakeScreens screens;
    FakeScreenCapture capture;
    FakeTextRecognizer recognizer{clock};
    ScreenOCR ocr{screens, capture, recognizer};
    std::stop_source stop;
};

TEST_F(ScreenOCRRoad, ReadsTheWordUnderThePointerAndTellsItsPlaceOnTheScreen)
{
    recognizer.lines = {raw("was reluctant to", {0.25, 0.45, 0.5, 0.1})};
    const auto result = recognize({640, 400});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->word, QStringLiteral("reluctant"));
    EXPECT_EQ(result->context, QStringLiteral("was reluctant to"));
    EXPECT_TRUE(result->wordRect->contains(QPointF(640, 400)));
    EXPECT_NEAR(result->wordRect->height(), 20, 1e-9);
    ASSERT_EQ(capture.requests.size(), 1u);
    EXPECT_EQ(capture.requests[0].area, QRectF(260, 300, 760, 200));
    EXPECT_EQ(recognizer.styles, std::vector{RecognitionStyle::plain});
}

TEST_F(ScreenOCRRoad, TriesSubtitlesOnlyWhereNoWordWasFound)
{
    recognizer.subtitles = {raw("reluctant", {0.4, 0.45, 0.2, 0.1})};
    EXPECT_EQ(recognize({640, 400})->word, QStringLiteral("reluctant"));
    EXPECT_EQ(recognize({640, 400}, Seek::contextOnly), std::nullopt);
    EXPECT_EQ(recognizer.styles,
        (std::vector{RecognitionStyle::plain, RecognitionStyle::subtitles, RecognitionStyle::plain}));
}

TEST_F(ScreenOCRRoad, GivesNothingOffTheScreensAndPassesFailuresOn)
{
    EXPECT_EQ(recognize({-5, 400}), std::nullopt);
    EXPECT_EQ(textIn({-500, 0, 100, 100}), std::nullopt);
    EXPECT_TRUE(capture.requests.empty());
    recognizer.failure = QStringLiteral("引擎坏了");
    EXPECT_THROW(recognize({640, 400}), RecognitionFailure);
    capture.failure = QStringLiteral("没有画面");
    EXPECT_THROW(textIn({0, 0, 100, 100}), CaptureFailure);
    capture.failure.reset();
    stop.request_stop();
    EXPECT_THROW(recognize({640, 400}), Cancelled);
}

TEST_F(ScreenOCRRoad, ReadsAllTextInAFrameOnTheScreenThatHoldsItsMiddle)
{
    screens.screens.append(Screen{2, {1280, 0, 1000, 800}, {1280, 0, 1000, 800}, 2});
    recognizer.lines = {raw("new", {0.1, 0.2, 0.2, 0.1}), raw("some-", {0.1, 0.6, 0.2, 0.1}),
        raw("thing", {0.1, 0.4, 0.2, 0.1})};
    EXPECT_EQ(textIn({1200, 300, 400, 100}), QStringLiteral("something new"));
    ASSERT_EQ(capture.requests.size(), 1u);
    EXPECT_EQ(capture.requests[0].screen.id, 2u);
    EXPECT_EQ(capture.requests[0].area, QRectF(0, 400, 320, 100));
    EXPECT_EQ(recognizer.pictures[0].width, 640);
}

} // namespace nimbrelle
