#include "screen/SourceInfo.h"

#include "support/FakeDesktop.h"
#include "support/FakeSelection.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

class SourceInfoTest : public testing::Test {
protected:
    SourceInfoTest()
    {
        front.front = Application{.bundleID = QStringLiteral("browser"),
            .name = QStringLiteral("Browser"),
            .windowTitle = QStringLiteral("A page")};
    }

    /// The focused element `levels` levels under the page's root.
    void showPage(const char *address, std::size_t levels)
    {
        accessibility.chain.assign(levels, {});
        accessibility.chain.push_back({true, QString::fromUtf8(address)});
    }

    FakeFrontApplication front;
    FakeAccessibilityReader accessibility;
    SourceInfo info{front, accessibility};
};

TEST_F(SourceInfoTest, TellsApplicationTitleAndPage)
{
    showPage("https://www.example.org/a", 3);
    EXPECT_EQ(info.current(),
        (PageSource{QStringLiteral("Browser"), QStringLiteral("https://www.example.org/a"),
            QStringLiteral("A page")}));
}

TEST_F(SourceInfoTest, HasNothingToTellOfOurOwnWindowsOrOfNone)
{
    front.front->bundleID = front.own;
    EXPECT_EQ(info.current(), PageSource());
    front.front->bundleID = front.own = std::nullopt;
    EXPECT_EQ(info.current(), PageSource());
    front.front = std::nullopt;
    EXPECT_EQ(info.current(), PageSource());
    EXPECT_EQ(accessibility.questions, 0);
}

TEST_F(SourceInfoTest, LeavesOutWhatCannotBeHad)
{
    front.front->windowTitle = QString();
    EXPECT_EQ(info.current(), (PageSource{QStringLiteral("Browser"), std::nullopt, std::nullopt}));
}

TEST_F(SourceInfoTest, ClimbsFortyElementsAndNoMore)
{
    showPage("https://example.org/", 39);
    EXPECT_EQ(info.current().url, QStringLiteral("https://example.org/"));
    showPage("https://example.org/", 40);
    EXPECT_EQ(info.current().url, std::nullopt);
}

TEST_F(SourceInfoTest, KeepsOnlyAddressesOfPagesAndFiles)
{
    for (const char *address : {"http://a.b/", "https://a.b/", "file:///home/x/notes.pdf"}) {
        showPage(address, 0);
        EXPECT_EQ(info.current().url, QString::fromUtf8(address));
    }
    for (const char *address : {"HTTPS://a.b/", "about:blank", "x-app://thing", ""}) {
        showPage(address, 0);
        EXPECT_EQ(info.current().url, std::nullopt) << address;
    }
}

TEST_F(SourceInfoTest, TheWindowsDocumentComesFirstEvenWhenItIsRejected)
{
    showPage("https://example.org/", 1);
    front.front->document = QStringLiteral("file:///home/x/notes.pdf");
    EXPECT_EQ(info.current().url, QStringLiteral("file:///home/x/notes.pdf"));
    front.front->document = QStringLiteral("x-app://thing");
    EXPECT_EQ(info.current().url, std::nullopt);
    EXPECT_EQ(accessibility.questions, 0);
}

TEST_F(SourceInfoTest, AsksAHungProgramOnce)
{
    showPage("https://example.org/", 5);
    accessibility.hangs = true;
    EXPECT_EQ(
        info.current(), (PageSource{QStringLiteral("Browser"), std::nullopt, QStringLiteral("A page")}));
    EXPECT_EQ(accessibility.questions, 1);
}

} // namespace nimbrelle
