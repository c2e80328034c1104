#include "screen/SelectionReader.h"

#include "support/Await.h"
#include "support/FakeDesktop.h"
#include "support/FakeInput.h"
#include "support/FakeSelection.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace std::chrono_literals;

class SelectionReaderTest : public testing::Test {
protected:
    SelectionReaderTest()
    {
        accessibility.chain = {{}};
        front.front = Application{.bundleID = QStringLiteral("editor")};
        clipboard.content = before;
        keys.whenCopied = [this] { clipboard.writeText(QStringLiteral("copied")); };
        reader.noteMouseDown();
    }

    Running<std::optional<SelectionReader::Result>> read() { return Running(reader.read(stop.get_token())); }

    /// What the last road, or any before it, gives within its 300 ms.
    std::optional<SelectionReader::Result> readToTheEnd()
    {
        auto running = read();
        clock.advance(300ms);
        return running.result();
    }

    static SelectionReader::Result result(const char *text, const char *context = nullptr)
    {
        return {QString::fromUtf8(text), context ? std::optional(QString::fromUtf8(context)) : std::nullopt};
    }

    const ClipboardSnapshot before{
        {{QStringLiteral("text/html"), "<b>x</b>"}, {QStringLiteral("image/png"), "\x89P"}},
        {{QStringLiteral("private/type"), QByteArray("\0\1", 2)}}};
    ManualClock clock;
    FakeAccessibilityReader accessibility;
    FakePrimarySelection primary;
    FakeClipboard clipboard;
    FakeKeySender keys;
    FakePointer pointer;
    FakeFrontApplication front;
    std::stop_source stop;
    SelectionReader reader{clock, accessibility, primary, clipboard, keys, pointer, front};
};

TEST_F(SelectionReaderTest, AccessibilityComesFirstAndGivesTheContext)
{
    accessibility.selection = QStringLiteral(" was ");
    accessibility.piece = TextPiece{QStringLiteral("I was here"), 1, 5};
    primary.claim(QStringLiteral("other"));
    EXPECT_EQ(read().result(), result(" was ", "I was here"));
    EXPECT_EQ(primary.reads, 0);
    accessibility.piece.reset();
    EXPECT_EQ(read().result(), result(" was ")); // the text is not lost with its context
}

TEST_F(SelectionReaderTest, ContextReachesThreeHundredUnitsToEachSide)
{
    const QString text(5000, u'x');
    const auto size = [](const TextPiece &piece) { return SelectionReader::contextOf(piece).value().size(); };
    EXPECT_EQ(size({text.left(150), 100, 10}), 150);
    EXPECT_EQ(size({text, 1000, 5}), 605);
    EXPECT_EQ(size({text, 4990, 10}), 310);
    EXPECT_EQ(size({text, 9000, 50}), 300); // an offset that can't be
    EXPECT_EQ(SelectionReader::contextOf({QString(), 0, 0}), std::nullopt);
    // Neither end is half of a pair.
    const QString faces = QStringLiteral("\U0001F600").repeated(400);
    EXPECT_EQ(SelectionReader::contextOf({faces, 401, 0}), faces.sliced(102, 598));
    // Stand-ins for pictures become blanks.
    EXPECT_EQ(SelectionReader::contextOf({QStringLiteral("a\uFFFCb"), 0, 1}), QStringLiteral("a b"));
}

TEST_F(SelectionReaderTest, BlankSelectionLeadsToThePrimarySelection)
{
    accessibility.selection = QStringLiteral(" \n");
    primary.claim(QStringLiteral("marked"));
    EXPECT_EQ(read().result(), result("marked"));
    EXPECT_EQ(keys.copies, 0);
    EXPECT_EQ(clipboard.restores, 0);
}

TEST_F(SelectionReaderTest, StandInsInTheTextGiveWayToThePrimarySelectionButItsContextServes)
{
    accessibility.selection = QStringLiteral("see \uFFFC for");
    accessibility.piece = TextPiece{QStringLiteral("Please see \uFFFC for more"), 7, 9};
    primary.claim(QStringLiteral("see here for"));
    EXPECT_EQ(read().result(), result("see here for")); // the place itself is hidden in that context
    primary.claim(QStringLiteral("more"));
    EXPECT_EQ(read().result(), result("more", "Please see   for more"));
    primary.claim(std::nullopt);
    keys.works = false;
    EXPECT_EQ(readToTheEnd(), result("see   for", "Please see   for more")); // better than nothing
}

TEST_F(SelectionReaderTest, AnOlderPrimarySelectionIsNotTaken)
{
    primary.claim(QStringLiteral("of an hour ago"));
    reader.noteMouseDown();
    EXPECT_EQ(readToTheEnd(), result("copied"));
    EXPECT_EQ(primary.reads, 0);
}

TEST_F(SelectionReaderTest, TheCopyPutsTheClipboardBackByteForByte)
{
    EXPECT_EQ(readToTheEnd(), result("copied"));
    EXPECT_EQ(clipboard.content, before);
    clipboard.content = {};
    EXPECT_EQ(readToTheEnd(), result("copied"));
    EXPECT_EQ(clipboard.content, ClipboardSnapshot());
    keys.whenCopied = [this] { clipboard.write({{{QStringLiteral("image/png"), "P"}}}); };
    EXPECT_EQ(readToTheEnd(), std::nullopt); // a picture was marked
    EXPECT_EQ(clipboard.content, ClipboardSnapshot());
    EXPECT_EQ(clipboard.restores, 3);
}

TEST_F(SelectionReaderTest, ACopyThatDoesNothingEndsAfterThreeHundredMilliseconds)
{
    keys.whenCopied = {};
    auto running = read();
    const quint64 count = clipboard.changeCount();
    clock.advance(299ms);
    EXPECT_FALSE(running.isDone());
    clock.advance(1ms);
    EXPECT_EQ(running.result(), std::nullopt);
    EXPECT_EQ(clipboard.changeCount(), count);
    EXPECT_EQ(clipboard.restores, 0);
}

TEST_F(SelectionReaderTest, CopiesNowhereWhereItCouldDoHarm)
{
    front.front->isTerminal = true;
    EXPECT_EQ(readToTheEnd(), std::nullopt);
    front.front = std::nullopt;
    EXPECT_EQ(readToTheEnd(), std::nullopt);
    front.front = Application{};
    pointer.held = modifier::shift;
    EXPECT_EQ(readToTheEnd(), std::nullopt);
    pointer.held = 0;
    clipboard.answers = false; // its owner gives it out too slowly to be put back
    EXPECT_EQ(readToTheEnd(), std::nullopt);
    EXPECT_EQ(keys.copies, 0);
    EXPECT_EQ(clipboard.content, before);
}

TEST_F(SelectionReaderTest, AStartedCopyRestoresAlsoWhenStoppedAndTheNextWaitsForIt)
{
    keys.whenCopied = {};
    auto first = read();
    stop.request_stop();
    stop = std::stop_source();
    auto second = read();
    EXPECT_EQ(keys.copies, 1);
    clipboard.writeText(QStringLiteral("late"));
    clock.advance(30ms);
    EXPECT_EQ(first.result(), std::nullopt); // nobody wants it any more
    EXPECT_EQ(clipboard.content, before);
    EXPECT_TRUE(waitUntil([this] { return keys.copies == 2; }));
    clipboard.writeText(QStringLiteral("second"));
    clock.advance(30ms);
    EXPECT_EQ(second.result(), result("second"));
    EXPECT_EQ(clipboard.content, before);
}

} // namespace nimbrelle
