#include "support/Await.h"
#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SelectionReaderTest : public testing::Test, protected GestureStage {
protected:
    using Result = SelectionReader::Result;

    SelectionReaderTest()
    {
        clipboard.content = before;
        keys.whenCopied = [this] { clipboard.writeText(u"copied"_s); };
        gesture();
    }

    void gesture()
    {
        selection.noteMouseDown();
        selection.noteMouseUp();
    }

    Running<std::optional<Result>> begin() { return Running(selection.read(stop.get_token())); }

    /// Lets a simulated copy, if it comes to one, have all of its 300 ms.
    std::optional<Result> read()
    {
        auto running = begin();
        advance(300ms);
        return running.result();
    }

    static Result text(const QString &text, const std::optional<QString> &context = std::nullopt)
    {
        return {.text = text, .context = context};
    }

    const ClipboardSnapshot before{{{u"text/html"_s, "<b>x</b>"}, {u"image/png"_s, "\x89P"}},
        {{u"private/type"_s, QByteArray("\0\1", 2)}}};
    std::stop_source stop;
};

TEST_F(SelectionReaderTest, AccessibilityComesFirstThenThePrimarySelection)
{
    primary.claim(u"other"_s);
    mark(u"was "_s, u"was here"_s);
    EXPECT_EQ(read(), text(u"was "_s, u"was here"_s));
    mark(u"was "_s);
    EXPECT_EQ(read(), text(u"was "_s)); // the text is not lost with its context
    mark(u" \n"_s);
    EXPECT_EQ(read(), text(u"other"_s));
    EXPECT_EQ(keys.copies, 0);
    gesture(); // after which that one is an older selection
    EXPECT_EQ(read(), text(u"copied"_s));
    EXPECT_EQ(primary.reads, 3);
}

TEST_F(SelectionReaderTest, AnOldMarkIsNotWhatTheGestureMarked)
{
    mark(u"old"_s, u"old mark"_s);
    accessibility.isOldMark = true;
    selection.noteMouseDown();
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(keys.copies, 0) << "which would copy the old mark";
    primary.claim(u"old"_s); // by a program that tells of no changes
    EXPECT_EQ(read(), text(u"old"_s, u"old mark"_s));
    accessibility.changes = 1; // it does tell, so this one is of another window
    selection.noteMouseDown();
    primary.claim(u"newer"_s);
    EXPECT_EQ(read(), text(u"newer"_s));
    selection.noteMouseDown();
    primary.claim(u" "_s); // which can't be read: there is nothing, and not the old mark
    EXPECT_EQ(read(), std::nullopt);
    selection.noteMouseDown();
    accessibility.isOldMark = false;
    EXPECT_EQ(read(), text(u"old"_s, u"old mark"_s));
}

TEST_F(SelectionReaderTest, OfSeveralMarkedParagraphsThePrimarySelectionHoldsAll)
{
    mark(u"the last"_s, u"the last of three"_s);
    primary.claim(u"one.\nTwo.\nthe last"_s);
    EXPECT_EQ(read(), text(u"one.\nTwo.\nthe last"_s));
    primary.claim(u"something else"_s);
    EXPECT_EQ(read(), text(u"the last"_s, u"the last of three"_s));
}

TEST_F(SelectionReaderTest, ContextReachesThreeHundredUnitsToEachSide)
{
    const auto contextOf = [](const QString &text, qsizetype location, qsizetype length) {
        return SelectionReader::contextOf({.text = text, .location = location, .length = length});
    };
    const QString text(5000, u'x');
    EXPECT_EQ(contextOf(text.left(150), 100, 10)->size(), 150);
    EXPECT_EQ(contextOf(text, 1000, 5)->size(), 605);
    EXPECT_EQ(contextOf(text, 9000, 50)->size(), 300); // an offset that can't be
    EXPECT_EQ(contextOf(QString(), 0, 0), std::nullopt);
    const QString faces = u"\U0001F600"_s.repeated(400);
    EXPECT_EQ(contextOf(faces, 401, 0), faces.sliced(102, 598)); // neither end is half of a pair
}

TEST_F(SelectionReaderTest, PlaceholdersGiveWayToThePrimarySelectionButTheirContextServes)
{
    mark(u"see \uFFFC for"_s);
    accessibility.piece = TextPiece{.text = u"Please see \uFFFC for more"_s, .location = 7, .length = 9};
    primary.claim(u"see here for"_s);
    EXPECT_EQ(read(), text(u"see here for"_s)); // the place itself is hidden in that context
    primary.claim(u"more"_s);
    EXPECT_EQ(read(), text(u"more"_s, u"Please see   for more"_s));
    primary.claim(std::nullopt);
    keys.works = false;
    EXPECT_EQ(read(), text(u"see   for"_s, u"Please see   for more"_s)); // better than nothing
}

TEST_F(SelectionReaderTest, APressWhileTheProgramAnswersDoesNotAgeTheSelection)
{
    accessibility.chain = {{}};
    accessibility.delay = 100ms;
    primary.claim(u"marked"_s);
    auto running = begin();
    selection.noteMouseDown();
    advance(200ms);
    EXPECT_EQ(running.result(), text(u"marked"_s));
    running = begin();
    stop.request_stop();
    primary.claim(u"newer"_s);
    advance(200ms);
    EXPECT_EQ(running.result(), std::nullopt);
    EXPECT_EQ(primary.reads, 1) << "a stopped read asks nobody else";
}

TEST_F(SelectionReaderTest, TheCopyRestoresTheClipboardByteForByte)
{
    EXPECT_EQ(read(), text(u"copied"_s));
    EXPECT_EQ(clipboard.content, before);
    clipboard.content = {};
    keys.whenCopied = [this] { clipboard.write({{{u"image/png"_s, "P"}}}); };
    EXPECT_EQ(read(), std::nullopt); // a picture was marked
    EXPECT_EQ(clipboard.content, ClipboardSnapshot());
    EXPECT_EQ(clipboard.restores, 2);
}

TEST_F(SelectionReaderTest, ACopyThatDoesNothingEndsAfterThreeHundredMilliseconds)
{
    keys.whenCopied = {};
    auto running = begin();
    advance(299ms);
    EXPECT_FALSE(running.isDone());
    advance(1ms);
    EXPECT_EQ(running.result(), std::nullopt);
    EXPECT_EQ(clipboard.restores, 0);
}

TEST_F(SelectionReaderTest, CopiesNowhereWhereTheRulesForbidIt)
{
    const auto copies = [this] {
        read();
        return std::exchange(keys.copies, 0);
    };
    pointer.held = modifier::shift;
    EXPECT_EQ(copies(), 0);
    pointer.held = 0;
    clipboard.answers = false; // its owner gives it out too slowly for it to be restored
    EXPECT_EQ(copies(), 0);
    clipboard.answers = true;
    front.front->copyShortcut = CopyShortcut::harmful;
    EXPECT_EQ(copies(), 0);
    front.front->copyShortcut = CopyShortcut::ordinary;
    configure([](AppConfig &config) { config.noCopyBundleIDs = {u"reader"_s}; });
    EXPECT_EQ(copies(), 0);
    configure([](AppConfig &config) { config.noCopyBundleIDs = {u"another"_s}; });
    selection.noteMouseDown();
    window.pointed.area.translate(5, 0); // the window was dragged
    selection.noteMouseUp();
    EXPECT_EQ(copies(), 0);
    window.pointed.hasTextCursor = false;
    gesture();
    EXPECT_EQ(copies(), 0);
    window.pointed.hasTextCursor = true;
    gesture();
    accessibility.delay = 150ms; // both answers together: the program hangs
    accessibility.chain = {{}};
    EXPECT_EQ(copies(), 0);
    accessibility.delay = 0ms;
    EXPECT_EQ(copies(), 1);
}

TEST_F(SelectionReaderTest, AProgramThatHangsDoesNotCostTheClipboard)
{
    keys.whenCopied = {};
    keys.sentAt = 5000;
    const auto isUndone = [this](quint32 causedAt) {
        clipboard.times = {.causedAt = causedAt, .doneAt = causedAt};
        clipboard.writeText(u"late"_s);
        return clipboard.content == before;
    };
    const auto giveUp = [this] {
        clipboard.write(before, 2);
        gesture();
        EXPECT_EQ(read(), std::nullopt);
    };
    giveUp();
    gesture();
    EXPECT_EQ(read(), std::nullopt); // once more, before it wakes
    advance(2s);
    selection.noteMouseDown(); // an impatient click
    EXPECT_TRUE(isUndone(5002));
    EXPECT_TRUE(isUndone(5003));
    EXPECT_FALSE(isUndone(5003)) << "it got no more shortcuts than these";
    giveUp();
    selection.noteMouseDown();
    EXPECT_FALSE(isUndone(9000)) << "the user's own copy by the mouse";
    giveUp();
    pointer.held = modifier::control;
    input.type();
    pointer.held = 0;
    EXPECT_FALSE(isUndone(9000)) << "the user's own copy by the keys";
    giveUp();
    clipboard.write({{{u"text/plain"_s, "elsewhere"}}}, 2);
    EXPECT_FALSE(isUndone(5000)) << "the clipboard held something newer by then";
    giveUp();
    advance(10s);
    EXPECT_FALSE(isUndone(5000)) << "nobody waits for ever";
    EXPECT_EQ(clock.pending(), 0);
}

TEST_F(SelectionReaderTest, AStartedCopyRestoresAlsoWhenStoppedAndTheNextWaitsForIt)
{
    keys.whenCopied = {};
    auto first = begin();
    stop.request_stop();
    stop = std::stop_source();
    auto second = begin();
    EXPECT_EQ(keys.copies, 1);
    clipboard.writeText(u"late"_s);
    advance(30ms);
    EXPECT_EQ(first.result(), std::nullopt); // nobody wants it any more
    EXPECT_EQ(clipboard.content, before);
    EXPECT_TRUE(waitUntil([this] { return keys.copies == 2; }));
    clipboard.writeText(u"second"_s);
    advance(30ms);
    EXPECT_EQ(second.result(), text(u"second"_s));
    EXPECT_EQ(clipboard.content, before);
}

} // namespace nimbrelle
