#include "screen/SourceInfo.h"

#include "support/Await.h"
#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SourceInfoTest : public testing::Test, protected GestureStage {
protected:
    SourceInfoTest()
    {
        front.front = Application{.bundleID = u"browser"_s, .name = u"Browser"_s, .windowTitle = u"A page"_s};
    }

    /// The focused element `levels` levels under the page's root.
    void showPage(const QString &address, std::size_t levels = 0)
    {
        accessibility.chain.assign(levels, {});
        accessibility.chain.push_back({.isWebArea = true, .address = address});
    }

    PageSource current() { return await(info.current(stop.get_token())); }

    std::stop_source stop;
    SourceInfo info{front, accessibility};
};

TEST_F(SourceInfoTest, TellsApplicationTitleAndPageUpToFortyElementsAbove)
{
    showPage(u"https://a.b/"_s, 39);
    EXPECT_EQ(current(), (PageSource{.app = u"Browser"_s, .url = u"https://a.b/"_s, .title = u"A page"_s}));
    showPage(u"https://a.b/"_s, 40);
    front.front->windowTitle = QString();
    EXPECT_EQ(current(), (PageSource{.app = u"Browser"_s, .url = {}, .title = {}}));
}

TEST_F(SourceInfoTest, TellsTheWindowOfTheMomentWhenThePageAnswersLater)
{
    showPage(u"https://a.b/"_s, 2);
    accessibility.delay = 20ms;
    Running<PageSource> running(info.current(stop.get_token()));
    front.front = Application{.bundleID = u"other"_s, .name = u"Other"_s, .windowTitle = u"Mail"_s};
    advance(99ms); // focused; then role and parent side by side at each of three; then the address
    EXPECT_FALSE(running.isDone());
    advance(1ms);
    EXPECT_EQ(
        running.result(), (PageSource{.app = u"Browser"_s, .url = u"https://a.b/"_s, .title = u"A page"_s}));
}

TEST_F(SourceInfoTest, AsksNothingMoreOnceItIsStopped)
{
    auto brief = std::make_unique<SourceInfo>(front, accessibility);
    showPage(u"https://a.b/"_s, 30);
    accessibility.delay = 20ms;
    Running<PageSource> running(brief->current(stop.get_token()));
    advance(50ms);
    stop.request_stop();
    brief.reset();
    advance(20ms);
    EXPECT_EQ(running.result().url, std::nullopt);
    EXPECT_EQ(clock.pending(), 0);
}

TEST_F(SourceInfoTest, ATitleIsOneLineThatReadsAsItIsWritten)
{
    front.front->windowTitle = u"in\u202Evoice\n\x07"_s;
    EXPECT_EQ(current().title, u"invoice"_s);
    front.front->windowTitle = u"\u200F\n"_s;
    EXPECT_EQ(current().title, std::nullopt);
}

TEST_F(SourceInfoTest, HasNothingToTellOfOurOwnWindowsOrOfNone)
{
    front.front->bundleID = front.own;
    EXPECT_EQ(current(), PageSource());
    front.front->bundleID = front.own = std::nullopt;
    EXPECT_EQ(current(), PageSource());
    front.front = std::nullopt;
    EXPECT_EQ(current(), PageSource());
}

TEST_F(SourceInfoTest, KeepsOnlyAddressesOfPagesAndFilesTheWindowsOwnBeforeThePages)
{
    for (const QString &kept : {u"http://a.b/"_s, u"https://a.b/"_s, u"file:///home/x/notes.pdf"_s}) {
        showPage(kept);
        EXPECT_EQ(current().url, kept);
    }
    front.front->document = u"x-app://thing"_s; // rejected, and yet the page is not asked
    EXPECT_EQ(current().url, std::nullopt);
}

} // namespace nimbrelle
