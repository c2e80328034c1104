#include "support/Await.h"
#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using Seek = ScreenOCR::Seek;
using Line = ScreenOCR::Line;

namespace {

Line line(const QString &text, const QRectF &box, double confidence = 100)
{
    return ScreenOCR::linesFrom({FakeTextRecognizer::line(text, box, confidence)}).first();
}

QString wordsOf(const QString &text)
{
    QStringList words;
    for (const ScreenOCR::Word &word : line(text, {0, 0, 1, 0.1}).words)
        words.append(word.text);
    return words.join(u'|');
}

QString contextAt(const QList<Line> &lines, QPointF cursor)
{
    return ScreenOCR::analyze(lines, cursor, Seek::contextOnly).value().context;
}

} // namespace

TEST(ScreenOCR, MendsBarsThatCanOnlyBeLetters)
{
    const std::pair<QString, QString> cases[]{{u"He||o"_s, u"Hello"_s}, {u"a | b"_s, u"a | b"_s},
        {u"|ate"_s, u"late"_s}, {u"|Ate"_s, u"|Ate"_s}, {u"fu||"_s, u"ful|"_s}, {u"1|2"_s, u"1|2"_s}};
    for (const auto &[from, to] : cases)
        EXPECT_EQ(ScreenOCR::cleaned(from), to);
}

TEST(ScreenOCR, CutsLinesIntoWordsWithBoxesOfTheirOwn)
{
    EXPECT_EQ(wordsOf(u"Don't stop, well-known foo_bar (it’s)!"_s), u"Don't|stop|well|known|foo|bar|it’s"_s);
    EXPECT_EQ(wordsOf(u"'quoted' cafe\u0301 a1 — $5"_s), u"quoted|cafe\u0301|a1|5"_s);
    const Line made = line(u"a |ost, one"_s, {0, 0.5, 0.55, 0.1}); // each character is 0.05 wide
    EXPECT_EQ(made.words[1].text, u"lost"_s);
    EXPECT_NEAR(made.words[1].box.x(), 0.1, 1e-9);
    EXPECT_NEAR(made.words[1].box.width(), 0.2, 1e-9);
}

TEST(ScreenOCR, FindsTheWordUnderTheCursor)
{
    const QList<Line> lines{line(u"one 2024 a1 字"_s, {0, 0.5, 1.3, 0.1})}; // each character is 0.1 wide
    const std::pair<QPointF, std::optional<QString>> cases[]{
        {{0.3149, 0.55}, u"one"_s}, // between two words, near to one
        {{0.3151, 0.55}, std::nullopt},
        {{0.6, 0.55}, std::nullopt}, // a number is no word
        {{1.0, 0.55}, u"a1"_s},
        {{1.25, 0.55}, std::nullopt},
        {{0.15, 0.609}, u"one"_s}, // a hair above the line
        {{0.15, 0.611}, std::nullopt},
    };
    for (const auto &[cursor, expected] : cases) {
        const auto result = ScreenOCR::analyze(lines, cursor, Seek::word);
        EXPECT_EQ(result ? result->word : std::nullopt, expected) << cursor.x() << ' ' << cursor.y();
    }
    EXPECT_FALSE(ScreenOCR::analyze({line(u"..."_s, {0, 0.5, 0.3, 0.1})}, {0.1, 0.55}, Seek::word));
}

TEST(ScreenOCR, GivesTheContextWhereverTheCursorIs)
{
    const QList<Line> lines{line(u"left words"_s, {0.0, 0.5, 0.2, 0.1}),
        line(u"right words"_s, {0.6, 0.5, 0.4, 0.1}), line(u"far below"_s, {0.0, 0.0, 0.2, 0.1})};
    EXPECT_EQ(ScreenOCR::analyze(lines, {0.55, 0.99}, Seek::contextOnly), // of one height, the nearer
        (ScreenOCR::Result{.word = {}, .context = u"right words"_s, .wordRect = {}}));
    EXPECT_EQ(contextAt(lines, {0.25, 0.99}), u"left words"_s);
    EXPECT_EQ(contextAt(lines, {0.95, 0.05}), u"far below"_s); // height counts first
    EXPECT_FALSE(ScreenOCR::analyze({}, {0.5, 0.5}, Seek::contextOnly));
}

TEST(ScreenOCR, ContextKeepsToTheParagraphAndItsColumn)
{
    const QList<Line> lines{
        line(u"too far above"_s, {0.1, 0.86, 0.3, 0.1}), // middles 0.36 apart, more than 3.5 heights
        line(u"third"_s, {0.1, 0.4, 0.3, 0.1}),
        line(u"right part"_s, {0.3, 0.505, 0.2, 0.1}), // of one row: a little higher, but further right
        line(u"second,"_s, {0.1, 0.5, 0.15, 0.1}),
        line(u"first"_s, {0.1, 0.6, 0.3, 0.1}),
        line(u"sidebar"_s, {0.56, 0.5, 0.3, 0.1}),
    };
    EXPECT_EQ(ScreenOCR::analyze(lines, {0.11, 0.55}, Seek::word)->context, // the anchor is "second,"
        u"first second, right part third"_s);
    // The band ends 0.05 beside the anchor, and its ends belong to it.
    const QList<Line> flat{line(u"anchor"_s, {0.25, 0.5, 0.25, 0.0}),
        line(u"right end"_s, {0.55, 0.5, 0.1, 0.0}), line(u"left end"_s, {0.0, 0.5, 0.2, 0.0}),
        line(u"beyond"_s, {0.0, 0.5, 0.19, 0.0}), line(u"below"_s, {0.25, 0.431, 0.1, 0.0}),
        line(u"too low"_s, {0.25, 0.429, 0.1, 0.0})};
    EXPECT_EQ(contextAt(flat, {0.3, 0.5}), u"left end anchor right end below"_s);
}

std::optional<QString> wordAt(const QList<Line> &lines, QPointF cursor, Seek seek)
{
    const auto result = ScreenOCR::analyze(lines, cursor, seek);
    return result ? result->word : std::nullopt;
}

TEST(ScreenOCR, OpensWithoutBeingAskedOnlyWhatIsCertainlyAWord)
{
    struct Case {
        QString word;
        double confidence;
        bool isSure;
        bool isPossible;
    };
    for (const Case &each : {Case{u"reluctant"_s, 70, true, true}, Case{u"BaTARBAAE"_s, 69, false, true},
             Case{u"BaTARBAAE"_s, 50, false, true}, Case{u"BaTARBAAE"_s, 49, false, false},
             Case{u"the"_s, 80, true, true}, Case{u"Bek"_s, 79, false, true}}) {
        const QList<Line> lines{line(each.word, {0, 0.5, 0.3, 0.1}, each.confidence)};
        EXPECT_EQ(wordAt(lines, {0.1, 0.55}, Seek::sureWord).has_value(), each.isSure) << each.confidence;
        EXPECT_EQ(wordAt(lines, {0.1, 0.55}, Seek::word).has_value(), each.isPossible) << each.confidence;
    }
}

TEST(ScreenOCR, OfALineInAnotherScriptTheEnglishWordsStay)
{
    RecognizedLine mixed =
        FakeTextRecognizer::line(u"BRERZ Python (TEREPHT) lambda"_s, {0, 0.5, 0.9, 0.1}, 40);
    for (qsizetype unit = 6; unit < 12; ++unit)
        mixed.unitConfidences[unit] = 90;
    for (qsizetype unit = 23; unit < 29; ++unit)
        mixed.unitConfidences[unit] = 84; // now and then something in another script scores as much
    const QList<Line> lines = ScreenOCR::linesFrom({mixed});
    const QPointF onPython(0.28, 0.55);
    const auto result = ScreenOCR::analyze(ScreenOCR::legible(lines, onPython), onPython, Seek::sureWord);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->word, u"Python"_s);
    EXPECT_EQ(result->context, u"Python"_s);
    EXPECT_FALSE(wordAt(ScreenOCR::legible(lines, {0.8, 0.55}), {0.8, 0.55}, Seek::sureWord));
}

TEST(ScreenOCR, AContextHasNothingThatAReaderWouldNotJoin)
{
    const QPointF cursor(0.4, 0.55);
    const auto context = [cursor](const QList<Line> &lines) {
        return contextAt(ScreenOCR::legible(lines, cursor), cursor);
    };
    const Line anchor = line(u"was reluctant to"_s, {0.3, 0.5, 0.4, 0.1});
    EXPECT_EQ(context({line(u"Ri RATES THES"_s, {0.3, 0.62, 0.4, 0.1}, 68), anchor,
                  line(u"post this"_s, {0.3, 0.38, 0.4, 0.1}, 70)}),
        u"was reluctant to post this"_s);
    EXPECT_EQ(context({anchor, line(u"Q"_s, {0.26, 0.5, 0.03, 0.1})}), u"was reluctant to"_s); // an icon
    EXPECT_EQ(context({line(u"the bar"_s, {0.3, 0.751, 0.4, 0.1}), anchor}), u"was reluctant to"_s);
    EXPECT_EQ(
        context({line(u"I"_s, {0.3, 0.749, 0.4, 0.1}), line(u"so I"_s, {0.3, 0.749, 0.4, 0.1}), anchor}),
        u"so I was reluctant to"_s); // blank lines are narrower
    EXPECT_EQ(context({line(u"cut in half"_s, {0.3, 0.9, 0.4, 0.1}),
                  line(u"ineers | was here, bu"_s, {0, 0.7, 1, 0.1}), anchor}),
        u"was here, was reluctant to"_s);
}

/// Marked by a double click, or by a drag to `to`, at the height of the line that `row()` makes.
ScreenOCR::Marked marked(const QString &text, double from, double to = -1)
{
    return {.text = text, .from = {from, 0.55}, .to = {to < 0 ? from : to, 0.55}};
}

/// Each character is 0.01 wide.
Line row(const QString &text, double x = 0)
{
    return line(text, {x, 0.5, 0.01 * static_cast<double>(text.size()), 0.1});
}

QString mendedContext(const QList<Line> &lines, const ScreenOCR::Marked &marked)
{
    return contextAt(ScreenOCR::withMarked(lines, marked), marked.middle());
}

TEST(MarkedContext, HoldsTheMarkedWordsWhateverTheirCaseAndPunctuation)
{
    const QList<Line> lines{row(u"Engineers don’t well-known, they ADMIT that"_s),
        line(u"it is un-"_s, {0, 0.38, 0.4, 0.1}), line(u"fair in a factory"_s, {0, 0.26, 0.4, 0.1}),
        line(u"far below"_s, {0, 0, 0.1, 0.02})};
    for (const QString &held :
        {u"admit"_s, u"don't"_s, u"well-known"_s, u"known they"_s, u"unfair"_s, u"“Admit”"_s})
        EXPECT_TRUE(ScreenOCR::hasMarked(lines, marked(held, 0.5))) << held.toStdString();
    EXPECT_TRUE(ScreenOCR::hasMarked(lines, marked(u"dmi"_s, 0.35))) << "a part of the word there";
    for (const QString &missing : {u"act"_s, u"dmi"_s, u"below"_s, u"that it was"_s})
        EXPECT_FALSE(ScreenOCR::hasMarked(lines, marked(missing, 0.5))) << missing.toStdString();
    EXPECT_FALSE(ScreenOCR::hasMarked({}, marked(u"admit"_s, 0.5)));
}

TEST(MarkedContext, AHiddenWordIsPutIntoItsGap)
{
    // In one line, between two that the engine made of one, before the first and after the last.
    EXPECT_EQ(mendedContext({row(u"Engineers were to,       that it"_s)}, marked(u"admit"_s, 0.20)),
        u"Engineers were to, admit       that it"_s);
    EXPECT_EQ(mendedContext({row(u"were to"_s), row(u"“that it"_s, 0.14)}, marked(u"admit"_s, 0.1)),
        u"were to admit “that it"_s);
    EXPECT_EQ(mendedContext({row(u"that it"_s, 0.1)}, marked(u"admit"_s, 0.06)), u"admit that it"_s);
    EXPECT_EQ(mendedContext({row(u"were to"_s)}, marked(u"admit"_s, 0.1, 0.12)), u"were to admit"_s);
    // A word of the wide gap's edge was hit, as a drag's end does.
    EXPECT_EQ(mendedContext({row(u"were to       that"_s)}, marked(u"admit"_s, 0.141)),
        u"were to       admit that"_s);
}

TEST(MarkedContext, AHiddenWordFarFromAnyOtherHasARowOfItsOwn)
{
    const QList<Line> lines{line(u"above it"_s, {0.3, 0.65, 0.4, 0.1}),
        line(u"and below"_s, {0.3, 0.35, 0.4, 0.1}), row(u"menu"_s, 0)};
    EXPECT_EQ(mendedContext(lines, marked(u"admit"_s, 0.4)), u"above it admit and below"_s);
    EXPECT_EQ(mendedContext(lines.first(2), marked(u"admit"_s, 0.4)), u"above it admit and below"_s);
}

TEST(MarkedContext, WhatTheEngineMadeOfTheMarkedTextGivesWay)
{
    EXPECT_EQ(
        mendedContext({row(u"were to adrnit, that"_s)}, marked(u"admit"_s, 0.1)), u"were to admit, that"_s);
    EXPECT_EQ(mendedContext({row(u"were to Ea that"_s)}, marked(u"admit"_s, 0.09)),
        u"were to admit that"_s); // no room for another word
    const QList<Line> withCursor{row(u"were to admitl that"_s)};
    EXPECT_FALSE(ScreenOCR::hasMarked(withCursor, marked(u"admit"_s, 0.1)));
    EXPECT_EQ(mendedContext(withCursor, marked(u"admit"_s, 0.1)), u"were to admit that"_s);
    EXPECT_EQ(mendedContext({row(u"were to give vp that"_s)}, marked(u"give up"_s, 0.085, 0.145)),
        u"were to give up that"_s);
}

class ScreenRecognition : public testing::Test, protected GestureStage {
protected:
    std::optional<ScreenOCR::Result> recognize(QPointF at, Seek seek = Seek::word)
    {
        return await(ocr.recognize(at, seek, stop.get_token()));
    }
    std::optional<QString> contextOf(const QString &marked)
    {
        const auto before = await(ocr.take(middle));
        capture.shown = 'm';
        return await(ocr.contextOf({.text = marked, .from = middle, .to = middle}, before, stop.get_token()));
    }
    std::optional<QString> textIn(const QRectF &rect)
    {
        return await(ocr.recognizeText(rect, stop.get_token()));
    }

    std::stop_source stop;
};

TEST_F(ScreenRecognition, ReadsTheWordUnderThePointerAndTellsItsPlaceOnTheScreen)
{
    recognizer.lines = {FakeTextRecognizer::line(u"was reluctant to"_s, {0.25, 0.45, 0.5, 0.1})};
    const auto result = recognize(middle);
    EXPECT_EQ(result->word, u"reluctant"_s);
    EXPECT_EQ(result->context, u"was reluctant to"_s);
    EXPECT_TRUE(result->wordRect->contains(middle));
    EXPECT_NEAR(result->wordRect->height(), 20, 1e-9);
}

TEST_F(ScreenRecognition, TriesSubtitlesOnlyWhereNoWordWasFound)
{
    showWord(u"reluctant"_s);
    recognize(middle);
    recognizer.subtitles = std::exchange(recognizer.lines, {});
    EXPECT_EQ(recognize(middle, Seek::contextOnly), std::nullopt);
    EXPECT_EQ(recognize(middle)->word, u"reluctant"_s);
    using enum RecognitionStyle;
    EXPECT_EQ(recognizer.styles, (std::vector{plain, plain, plain, subtitles}));
}

TEST_F(ScreenRecognition, TheTextRoundAMarkedWordIsReadAsItWasBeforeThenAsItIs)
{
    const auto shows = [](const QString &text) {
        return QList{FakeTextRecognizer::line(text, {0.3, 0.45, 0.4, 0.1})};
    };
    recognizer.lines = shows(u"were to admit that"_s);
    recognizer.linesOf['m'] = shows(u"were to       that"_s);
    EXPECT_EQ(contextOf(u"admit"_s), u"were to admit that"_s);
    EXPECT_EQ(recognizer.styles.size(), 1u);
    capture.shown = 'b'; // hidden when the button went down already
    recognizer.linesOf['b'] = recognizer.linesOf['m'];
    EXPECT_EQ(contextOf(u"admit"_s), u"were to admit       that"_s);
    capture.shown = 'b'; // as when the click raised a window over another
    recognizer.linesOf['m'] = shows(u"now admit this"_s);
    EXPECT_EQ(contextOf(u"admit"_s), u"now admit this"_s);
    recognizer.linesOf['b'] = recognizer.linesOf['m'] = {};
    capture.shown = 'b';
    EXPECT_EQ(contextOf(u"admit"_s), std::nullopt);
}

TEST_F(ScreenRecognition, AFrameRoundAnotherScriptHoldsNoEnglish)
{
    recognizer.lines = {FakeTextRecognizer::line(u"ERESICMNREY, TERE"_s, {0.1, 0.5, 0.4, 0.1}, 59)};
    EXPECT_EQ(textIn({100, 300, 400, 100}).value_or(QString()), QString());
    recognizer.lines.append(FakeTextRecognizer::line(u"some words"_s, {0.1, 0.3, 0.4, 0.1}, 60));
    EXPECT_EQ(textIn({100, 300, 400, 100}), u"some words"_s);
}

TEST_F(ScreenRecognition, ReadsAFrameRowByRowOnTheScreenThatHoldsItsMiddle)
{
    screens.screens.append({.id = 2, .frame = {1280, 0, 1000, 800}, .workArea = {}, .scale = 2});
    recognizer.subtitles = {FakeTextRecognizer::line(u"today"_s, {0.1, 0.1, 0.1, 0.1}),
        FakeTextRecognizer::line(u"some-"_s, {0.1, 0.5, 0.1, 0.1}),
        FakeTextRecognizer::line(u"new"_s, {0.05, 0.44, 0.1, 0.1}), // not in one row with it
        FakeTextRecognizer::line(u"thing"_s, {0.5, 0.52, 0.1, 0.1})}; // and this is
    EXPECT_EQ(textIn({1200, 300, 400, 100}), u"something new today"_s);
    ASSERT_EQ(capture.requests.size(), 1u);
    EXPECT_EQ(capture.requests[0].screen.id, 2u);
    EXPECT_EQ(capture.requests[0].area, QRectF(0, 400, 320, 100));
}

TEST_F(ScreenRecognition, GivesNothingOffTheScreensAndPassesFailuresOn)
{
    EXPECT_EQ(recognize({-5, 400}), std::nullopt);
    EXPECT_EQ(textIn({-500, 0, 100, 100}), std::nullopt);
    EXPECT_TRUE(capture.requests.empty());
    recognizer.failure = u"引擎坏了"_s;
    EXPECT_THROW(recognize(middle), RecognitionFailure);
    capture.failure = u"没有画面"_s;
    EXPECT_THROW(textIn({0, 0, 100, 100}), CaptureFailure);
    capture.failure.reset();
    stop.request_stop();
    EXPECT_THROW(recognize(middle), Cancelled);
    EXPECT_EQ(recognizer.styles.size(), 1u); // a stopped one is not begun
}

} // namespace nimbrelle
