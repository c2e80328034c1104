#include "platform/linux/wayland/SessionFront.h"

#include "platform/linux/x11/XScreens.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

class FakeWindows final : public SessionWindows {
public:
    bool isOffered() const override { return true; }
    bool isTold() const override { return isKnown; }
    const QList<SessionWindow> &all() const override { return windows; }
    QCoro::Task<> refresh() override { co_return; }
    void activate(const Application &) override { }

    QList<SessionWindow> windows;
    bool isKnown = true;
};

class NoProbe final : public PointerProbe {
public:
    bool isOffered() const override { return false; }
    void ask(std::function<void(std::optional<Answer>)> answered) override { answered(std::nullopt); }
};

SessionWindow windowOf(const QString &id, QRect area, bool isActive = false)
{
    SessionWindow window;
    window.application.bundleID = id;
    window.area = area;
    window.isActive = isActive;
    return window;
}

} // namespace

TEST(SessionFront, TellsTheActiveWindowAndTheOneBelowThePointer)
{
    XConnection x;
    const XScreens screens(x);
    NoProbe probe;
    SessionPointer pointer(probe, screens);
    FakeWindows windows;
    const SessionFront front(windows);
    const SessionWindowAtPointer pointed(windows, pointer, screens);
    EXPECT_EQ(front.current(), std::nullopt);
    EXPECT_EQ(pointed.current().kind, PointedWindow::Kind::other);

    windows.windows = {windowOf(u"below"_s, {0, 0, 500, 500}),
        windowOf(u"reader"_s, {100, 100, 300, 300}, true), windowOf(u"above"_s, {50, 50, 100, 100})};
    pointer.moveTo({120, 120});
    EXPECT_EQ(front.current()->bundleID, u"reader"_s);
    EXPECT_EQ(pointed.current().application.bundleID, u"reader"_s) << "the active one is not covered";
    pointer.moveTo({60, 60});
    EXPECT_EQ(pointed.current().application.bundleID, u"above"_s);
    pointer.moveTo({450, 450});
    EXPECT_EQ(pointed.current().application.bundleID, u"below"_s);
    pointer.moveTo({900, 700});
    EXPECT_EQ(pointed.current().kind, PointedWindow::Kind::other);
    windows.windows.last().isOwn = true;
    pointer.moveTo({60, 60});
    EXPECT_EQ(pointed.current().kind, PointedWindow::Kind::own);
}

TEST(SessionFront, ASessionThatTellsOfNoWindowSaysSo)
{
    FakeWindows windows;
    windows.isKnown = false;
    const SessionFront front(windows);
    EXPECT_FALSE(front.isTold());
    EXPECT_EQ(front.current(), std::nullopt);
}

} // namespace nimbrelle
