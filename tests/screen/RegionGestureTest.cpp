#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class RegionGestureTest : public testing::Test, protected GestureStage {
protected:
    RegionGestureTest()
    {
        configure([](AppConfig &config) { config.regionKey = ModifierKey::control; });
    }

    void doubleTap(std::chrono::milliseconds held = 100ms, std::chrono::milliseconds gap = 100ms)
    {
        tap(modifier::control, held);
        advance(gap);
        input.hold(modifier::control);
    }
    void letGo()
    {
        input.hold(0);
        advance(1s);
        overlay.finish(std::nullopt);
    }
    void frame()
    {
        letGo();
        doubleTap();
        overlay.finish(QRectF(300, 200, 400, 100));
    }
};

TEST_F(RegionGestureTest, BeginsOnTheSecondPressOfAQuickDoubleTap)
{
    struct Case {
        std::chrono::milliseconds held, gap;
        bool begins;
    };
    for (const Case &c : {Case{249ms, 349ms, true}, Case{250ms, 50ms, false}, Case{50ms, 350ms, false}}) {
        const int before = overlay.opened;
        doubleTap(c.held, c.gap);
        EXPECT_EQ(overlay.opened - before, c.begins ? 1 : 0) << c.held.count() << ' ' << c.gap.count();
        letGo();
    }
    tap(modifier::control, 300ms); // too long for a first one
    doubleTap();
    EXPECT_EQ(overlay.opened, 2);
    overlay.finish(std::nullopt);
    input.hold(0);
    input.hold(modifier::control); // a third press is no second
    EXPECT_EQ(overlay.opened, 2);
    EXPECT_EQ(keys.taps, 2) << "and no launcher opens at a release";
}

TEST_F(RegionGestureTest, OtherInputBreaksTheDoubleTap)
{
    const std::function<void()> breaks[]{[this] { input.type(); }, [this] { input.click(middle); }};
    for (const auto &breakIt : breaks) {
        input.hold(modifier::control);
        breakIt();
        input.hold(0);
        tap(modifier::control, 50ms);
        breakIt();
        input.hold(modifier::control);
        EXPECT_EQ(overlay.opened, 0);
        letGo();
    }
    // Released while another key is down, it was no tap either.
    input.hold(modifier::control);
    input.hold(modifier::control | modifier::shift);
    input.hold(0);
    input.hold(modifier::control);
    EXPECT_EQ(overlay.opened, 0);
}

TEST_F(RegionGestureTest, TranslatesWhatTheFrameHolds)
{
    showWord(u"framed"_s);
    dwell();
    doubleTap();
    EXPECT_FALSE(card.isVisible());
    frame();
    EXPECT_EQ(card.calls.last(), u"translate framed"_s);
    EXPECT_EQ(card.anchor, QPointF(324, 200));
    EXPECT_EQ(accessibility.gestures, 2);
    input.move({100, 700}); // a dwell card would go now
    EXPECT_TRUE(card.isVisible());
}

TEST_F(RegionGestureTest, TellsWhyThereIsNoTranslation)
{
    frame();
    capture.failure = u"没有画面"_s;
    frame();
    EXPECT_EQ(card.anchor, QPointF(324, 200));
    capture.allowed = false;
    letGo();
    doubleTap();
    EXPECT_EQ(card.calls,
        (QStringList{u"error 框里没有识别到英文。"_s, u"error 截取屏幕失败：没有画面"_s,
            u"error 框选翻译需要「屏幕录制」权限，请在设置里打开。 + settings"_s}));
    EXPECT_EQ(card.anchor, middle);
    EXPECT_EQ(overlay.opened, 2);
}

} // namespace nimbrelle
