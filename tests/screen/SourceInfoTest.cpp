#include "screen/SourceInfo.h"

#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

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

    SourceInfo info{front, accessibility};
};

TEST_F(SourceInfoTest, TellsApplicationTitleAndPageUpToFortyElementsAbove)
{
    showPage(u"https://a.b/"_s, 39);
    EXPECT_EQ(
        info.current(), (PageSource{.app = u"Browser"_s, .url = u"https://a.b/"_s, .title = u"A page"_s}));
    showPage(u"https://a.b/"_s, 40);
    front.front->windowTitle = QString();
    EXPECT_EQ(info.current(), (PageSource{.app = u"Browser"_s, .url = {}, .title = {}}));
}

TEST_F(SourceInfoTest, ATitleIsOneLineThatReadsAsItIsWritten)
{
    front.front->windowTitle = u"in\u202Evoice\n\x07"_s;
    EXPECT_EQ(info.current().title, u"invoice"_s);
    front.front->windowTitle = u"\u200F\n"_s;
    EXPECT_EQ(info.current().title, std::nullopt);
}

TEST_F(SourceInfoTest, HasNothingToTellOfOurOwnWindowsOrOfNone)
{
    front.front->bundleID = front.own;
    EXPECT_EQ(info.current(), PageSource());
    front.front->bundleID = front.own = std::nullopt;
    EXPECT_EQ(info.current(), PageSource());
    front.front = std::nullopt;
    EXPECT_EQ(info.current(), PageSource());
}

TEST_F(SourceInfoTest, KeepsOnlyAddressesOfPagesAndFilesTheWindowsOwnBeforeThePages)
{
    for (const QString &kept : {u"http://a.b/"_s, u"https://a.b/"_s, u"file:///home/x/notes.pdf"_s}) {
        showPage(kept);
        EXPECT_EQ(info.current().url, kept);
    }
    front.front->document = u"x-app://thing"_s; // rejected, and yet the page is not asked
    EXPECT_EQ(info.current().url, std::nullopt);
}

} // namespace nimbrelle
