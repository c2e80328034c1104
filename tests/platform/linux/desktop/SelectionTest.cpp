#include "platform/linux/desktop/Stage.h"
#include "platform/linux/x11/XSelectionRead.h"
#include "support/Printers.h"

#include <QDBusConnectionInterface>
#include <QElapsedTimer>

#include <csignal>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString passage = u"She was reluctant 😀 to post this, but here we go."_s;

struct Editor {
    const char *program;
    QStringList arguments;
    QString name;
};

void PrintTo(const Editor &editor, std::ostream *out)
{
    *out << editor.program;
}

class Selection : public Desktop, public testing::WithParamInterface<Editor> {
protected:
    void SetUp() override
    {
        Desktop::SetUp();
        const QString program = QString::fromLatin1(GetParam().program);
        if (QStandardPaths::findExecutable(program).isEmpty())
            GTEST_SKIP() << GetParam().program << " is not installed";
        ASSERT_TRUE(open(program, passage, GetParam().arguments));
    }

    /// Marks all of the text with the mouse, from its end to its beginning, and waits until it is done.
    void selectAll()
    {
        bool isFirst = true;
        const auto marked = [&] {
            const QRect window = frontWindow();
            if (window.isEmpty()) { // the end of the last test's editor has taken the focus along
                otherClient.moveTo({640, 500});
                otherClient.click();
                QTest::qWait(500);
                return false;
            }
            const QPoint end = window.topLeft() + QPoint(window.width() - 60, window.height() * 6 / 10);
            if (!std::exchange(isFirst, false)) { // a drag from what is marked already would move the text
                otherClient.moveTo(end);
                otherClient.click();
                QTest::qWait(500);
            }
            const quint64 before = platform.desktop.primarySelection.changeCount();
            otherClient.drag(end, window.topLeft() + QPoint(2, 30));
            return QTest::qWaitFor(
                [&] { return platform.desktop.primarySelection.changeCount() > before; }, 1000);
        };
        ASSERT_TRUE(QTest::qWaitFor(marked, 10000));
        QTest::qWait(100);
        recorder.take();
    }

    std::optional<AccessibleElement> focusedElement()
    {
        platform.accessibility.beginGesture();
        return finished(platform.accessibility.focusedElement());
    }
    std::optional<MarkedText> markedText(const AccessibleElement &element)
    {
        platform.accessibility.beginGesture();
        return finished(platform.accessibility.markedText(element, 300));
    }
    QString primaryText()
    {
        return finished(platform.desktop.primarySelection.text()).value_or(QString()).trimmed();
    }
};

class AccessibleSelection : public Selection { };

TEST_P(Selection, TheProgramInFrontIsKnown)
{
    const auto front = platform.desktop.frontApplication.current();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->process, process.processId());
    EXPECT_EQ(front->name, GetParam().name);
    EXPECT_EQ(front->copyShortcut, CopyShortcut::ordinary);
}

TEST_P(AccessibleSelection, AccessibilityGivesTheTextAndWhatIsRoundIt)
{
    selectAll();
    const auto element = focusedElement();
    ASSERT_TRUE(element);
    const auto marked = markedText(*element);
    ASSERT_TRUE(marked && marked->piece);
    EXPECT_EQ(marked->text.trimmed(), passage);
    EXPECT_EQ(marked->piece->text.mid(marked->piece->location, marked->piece->length).trimmed(), passage);
    EXPECT_EQ(finished(platform.accessibility.isWebArea(*element)), false);
    int steps = 0;
    for (auto each = element; each && steps < 40; each = finished(platform.accessibility.parent(*each)))
        ++steps;
    EXPECT_GT(steps, 1);
    EXPECT_LT(steps, 40);
}

TEST_P(AccessibleSelection, ASelectionBehindAnEmojiIsPlacedInUtf16Units)
{
    selectAll();
    constexpr quint32 end = 0xff57;
    constexpr quint32 shiftLeft = 0xffe1;
    constexpr quint32 controlLeft = 0xffe3;
    constexpr quint32 left = 0xff51;
    otherClient.key(controlLeft, true);
    otherClient.tap(end);
    otherClient.key(controlLeft, false);
    otherClient.key(shiftLeft, true);
    for (int i = 0; i < 6; ++i)
        otherClient.tap(left);
    otherClient.key(shiftLeft, false);
    const auto element = focusedElement();
    ASSERT_TRUE(element);
    std::optional<MarkedText> marked;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            marked = markedText(*element);
            return marked && marked->text.size() == 6;
        },
        2000));
    ASSERT_TRUE(marked->piece);
    EXPECT_TRUE(marked->piece->text.startsWith(passage));
    EXPECT_EQ(marked->piece->text.mid(marked->piece->location, marked->piece->length), marked->text);
}

TEST_P(Selection, ThePrimarySelectionIsThatOfTheGesture)
{
    const quint64 before = platform.desktop.primarySelection.changeCount();
    selectAll();
    EXPECT_GT(platform.desktop.primarySelection.changeCount(), before);
    EXPECT_EQ(primaryText(), passage);
}

TEST_P(Selection, ASimulatedCopyLeavesTheClipboardAsItWas)
{
    const ClipboardSnapshot before{
        {{u"UTF8_STRING"_s, "早"}, {u"image/png"_s, QByteArray(400'000, 'p')}, {u"text/html"_s, "<b>x</b>"}}};
    otherClient.clipboard.restore(before);
    otherClient.sync();
    selectAll();
    const auto snapshot = finished(platform.desktop.clipboard.snapshot());
    ASSERT_EQ(snapshot, before);
    const quint64 count = platform.desktop.clipboard.changeCount();
    ASSERT_TRUE(platform.desktop.keySender.sendCopy());
    QElapsedTimer time;
    time.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return platform.desktop.clipboard.changeCount() != count; }, 300));
    RecordProperty("copySeenAfterMs", static_cast<int>(time.elapsed()));
    EXPECT_EQ(finished(platform.desktop.clipboard.string()).value_or(QString()).trimmed(), passage);
    platform.desktop.clipboard.restore(*snapshot);
    awaitServer();
    EXPECT_EQ(finished(otherClient.clipboard.snapshot()), before);
    EXPECT_EQ(recorder.take(), QString());
}

TEST_P(AccessibleSelection, AHungProgramDelaysNoLongerThanTold)
{
    selectAll();
    const auto element = focusedElement();
    ASSERT_TRUE(element);
    kill(static_cast<pid_t>(process.processId()), SIGSTOP);
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(markedText(*element));
    EXPECT_EQ(finished(platform.accessibility.parent(*element)), std::nullopt);
    EXPECT_LT(time.elapsed(), 400);
    time.start();
    EXPECT_EQ(finished(platform.desktop.primarySelection.text()), std::nullopt);
    EXPECT_LT(time.elapsed(), 400);
    kill(static_cast<pid_t>(process.processId()), SIGCONT);
    EXPECT_TRUE(QTest::qWaitFor([&] { return markedText(*element).has_value(); }, 5000));
}

const Editor gtkEditor{"mousepad", {u"--disable-server"_s}, u"Mousepad"_s};
const Editor qtEditor{"featherpad", {u"--standalone"_s}, u"FeatherPad"_s};
const auto editorName = [](const auto &each) { return std::string(each.param.program); };

TEST_F(Desktop, WhatIsMarkedIsToldOfWithEachClaimAndOnceItIsGone)
{
    XPrimarySelection &primary = platform.desktop.primarySelection;
    ASSERT_TRUE(primary.isHeard());
    QString told;
    QObject::connect(&primary, &XPrimarySelection::claimed, &recorder, [&] { told += u'c'; });
    QObject::connect(&primary, &XPrimarySelection::gone, &recorder, [&] { told += u'g'; });
    XConnection &other = otherClient.x;
    const xcb_window_t window = xcb_generate_id(other.get());
    xcb_create_window(other.get(), 0, window, other.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, 0, nullptr);
    for (const xcb_window_t owner : {window, window, xcb_window_t{XCB_WINDOW_NONE}})
        xcb_set_selection_owner(other.get(), owner, XCB_ATOM_PRIMARY, XCB_CURRENT_TIME);
    otherClient.sync();
    EXPECT_TRUE(QTest::qWaitFor([&] { return told == u"ccg"_s; }, 2000)) << told.toStdString();
}

TEST_F(Desktop, AnAccessibilityBusThatHasGoneIsToldAndOpenedAgainWhenAskedForOrWhenItIsBack)
{
    EXPECT_EQ(platform.permissions.state(Grant::accessibility), (GrantState{true, {}}));
    const auto launcher = u"org.a11y.Bus"_s;
    QDBusConnectionInterface &session = *QDBusConnection::sessionBus().interface();
    const auto isOffered = [&] { return platform.permissions.state(Grant::accessibility).canRequest; };
    const auto endBus = [&] { // again, where a question that was under way has brought it back
        uint ended = 0;
        return QTest::qWaitFor([&] {
            const uint process = session.servicePid(launcher);
            if (process != 0 && process != ended)
                ::kill(static_cast<pid_t>(ended = process), SIGTERM);
            return ended != 0 && isOffered();
        });
    };
    ASSERT_TRUE(endBus());
    EXPECT_TRUE(platform.permissions.state(Grant::accessibility).granted) << "selections can still be read";
    platform.permissions.request(Grant::accessibility);
    EXPECT_FALSE(isOffered());
    const auto isConnected = [&] {
        if (isOffered()) // the launcher was not back yet, so the user asks once more
            platform.permissions.request(Grant::accessibility);
        return platform.accessibility.bus() == AtSpiReader::Bus::connected;
    };
    EXPECT_TRUE(QTest::qWaitFor(isConnected, 10000));
    ASSERT_TRUE(endBus());
    const auto isBack = [&] {
        if (!session.isServiceRegistered(launcher)) // as the next program that asks for it does
            session.startService(launcher);
        return platform.accessibility.bus() == AtSpiReader::Bus::connected;
    };
    EXPECT_TRUE(QTest::qWaitFor(isBack, 10000));
}

INSTANTIATE_TEST_SUITE_P(In, Selection, testing::Values(gtkEditor, qtEditor), editorName);
// The other one's toolkit does not come to the accessibility bus at each start.
INSTANTIATE_TEST_SUITE_P(In, AccessibleSelection, testing::Values(gtkEditor), editorName);

class Clipboards : public Desktop { };

TEST_F(Clipboards, SixFormatsWithThreeMegabytesComeBackByteForByte)
{
    QByteArray large;
    for (int i = 0; i < 3'000'000; ++i)
        large.append(static_cast<char>(i * 7 % 251));
    const ClipboardSnapshot before{{{u"UTF8_STRING"_s, "caf\xc3\xa9"}, {u"text/html"_s, "<i>a</i>"},
        {u"image/png"_s, large}, {u"application/x-private"_s, QByteArray("\0\1\2", 3)},
        {u"text/uri-list"_s, "file:///a%20b\r\n"}, {u"STRING"_s, "caf\xe9"}}};
    otherClient.clipboard.restore(before);
    otherClient.sync();
    QElapsedTimer time;
    time.start();
    const auto taken = finished(platform.desktop.clipboard.snapshot());
    RecordProperty("snapshotMs", static_cast<int>(time.elapsed()));
    ASSERT_EQ(taken, before);
    OtherXClient third;
    third.clipboard.restore({{{u"UTF8_STRING"_s, "copied"}}});
    third.sync();
    EXPECT_EQ(finished(platform.desktop.clipboard.string()), u"copied"_s);
    platform.desktop.clipboard.restore(*taken);
    awaitServer();
    EXPECT_EQ(finished(third.clipboard.snapshot()), before);
    EXPECT_EQ(
        finished(platform.desktop.clipboard.snapshot()), before); // our own is read without asking anybody
}

TEST_F(Clipboards, AChangeThatComesWithAReplyIsToldByALoopThatOnlyLooks)
{
    const quint64 before = otherClient.clipboard.changeCount();
    otherClient.clipboard.restore({{{u"UTF8_STRING"_s, "copied"}}});
    otherClient.sync(); // brings the event along, and the socket has no more to tell
    QCoreApplication::processEvents();
    EXPECT_EQ(otherClient.clipboard.changeCount(), before + 1);
}

TEST_F(Clipboards, AnEmptyClipboardStaysEmpty)
{
    platform.desktop.clipboard.restore({});
    EXPECT_EQ(finished(platform.desktop.clipboard.snapshot()), ClipboardSnapshot());
    EXPECT_EQ(finished(otherClient.clipboard.snapshot()), ClipboardSnapshot());
    EXPECT_EQ(finished(platform.desktop.clipboard.string()), std::nullopt);
}

TEST_F(Clipboards, WhatIsTooMuchIsLeftAlone)
{
    const auto formats = [](int count) {
        ClipboardItem item;
        for (int i = 0; i < count; ++i)
            item.insert(u"application/x-%1"_s.arg(i), "x");
        return ClipboardSnapshot{item};
    };
    const auto own = [this](const ClipboardSnapshot &content) {
        otherClient.clipboard.restore(content);
        otherClient.sync();
    };
    own(formats(50));
    EXPECT_EQ(finished(platform.desktop.clipboard.snapshot()), formats(50));
    own(formats(70));
    EXPECT_EQ(finished(platform.desktop.clipboard.snapshot()), std::nullopt);
    own({{{u"UTF8_STRING"_s, QByteArray(2'000'000, 'x')}}});
    EXPECT_EQ(finished(platform.desktop.clipboard.string()), std::nullopt);
    for (const int size : {5000, 400'000}) { // at once, and in pieces
        own({{{u"UTF8_STRING"_s, QByteArray(size, 'x')}, {u"STRING"_s, "x"}}});
        XConnection &x = platform.desktop.x;
        XSelectionRead enough(x, x.atom("CLIPBOARD"), {.time = 20s, .bytes = size + 100});
        const auto whole = finished(enough.convert(x.atom("UTF8_STRING")));
        EXPECT_EQ(whole.value_or(SelectionValue()).bytes.size(), size);
        XSelectionRead read(x, x.atom("CLIPBOARD"), {.time = 20s, .bytes = size - 1000});
        EXPECT_FALSE(finished(read.convert(x.atom("UTF8_STRING"))));
        EXPECT_TRUE(read.isGivenUp());
        EXPECT_FALSE(finished(read.convert(x.atom("STRING"))));
    }
}

TEST_F(Clipboards, AnOwnerThatNeverAnswersIsGivenUp)
{
    // A window that owns the clipboard and serves nobody.
    const xcb_window_t window = xcb_generate_id(otherClient.x.get());
    xcb_create_window(otherClient.x.get(), 0, window, otherClient.x.root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(otherClient.x.get(), window, otherClient.x.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    otherClient.sync();
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(finished(platform.desktop.clipboard.snapshot()), std::nullopt);
    EXPECT_NEAR(static_cast<double>(time.elapsed()), 300, 60);
}

} // namespace
