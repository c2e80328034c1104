#include "platform/linux/wayland/XProbe.h"

#include "platform/linux/x11/XScreens.h"
#include "support/OtherXClient.h"
#include "support/Printers.h"

#include <QTest>

#include <gtest/gtest.h>

namespace nimbrelle {
namespace {

class XProbeTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!x.isOpen())
            GTEST_SKIP() << "there is no display";
        const quint32 values[]{1, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE};
        editor = xcb_generate_id(other.x.get());
        xcb_create_window(other.x.get(), 0, editor, other.x.root(), 100, 100, 400, 300, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
            values);
        xcb_map_window(other.x.get(), editor);
        other.x.subscribe(&listener, [this](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) == XCB_BUTTON_PRESS)
                ++presses;
        });
        other.moveTo({200, 200});
    }

    void ask()
    {
        probe.ask([this](std::optional<PointerProbe::Answer> told) {
            ++answers;
            answer = told;
        });
        x.reply(xcb_get_input_focus_reply, xcb_get_input_focus(x.get())); // it is mapped now
    }
    bool isAnswered(int count = 1)
    {
        return QTest::qWaitFor([&] { return answers == count; }, 2000);
    }
    int pressesAfterAClick()
    {
        x.reply(xcb_get_input_focus_reply, xcb_get_input_focus(x.get()));
        other.click();
        QTest::qWait(50);
        return std::exchange(presses, 0);
    }

    XConnection x;
    XScreens screens{x};
    OtherXClient other;
    QObject listener;
    XProbe probe{x, screens};
    xcb_window_t editor = XCB_WINDOW_NONE;
    int presses = 0;
    int answers = 0;
    std::optional<PointerProbe::Answer> answer;
};

TEST_F(XProbeTest, TellsThePlaceOfTheFirstMotionAndTakesNoClick)
{
    ASSERT_TRUE(probe.isOffered());
    ask();
    QTest::qWait(50);
    EXPECT_EQ(answers, 0) << "the window under the pointer has changed, and nothing has moved";
    other.moveTo({210, 220});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answer->pixel, QPoint(208, 220));
    EXPECT_GE(answer->waited.count(), 50);
    EXPECT_EQ(pressesAfterAClick(), 1);

    ask(); // what the last move told after the answer is none for this
    EXPECT_EQ(answers, 1);
    other.moveTo({300, 300});
    ASSERT_TRUE(isAnswered(2));
    EXPECT_EQ(answer->pixel, QPoint(298, 300));
}

TEST_F(XProbeTest, ADragIsAnsweredOnceTheButtonIsUp)
{
    other.button(1, true);
    ask();
    other.moveTo({260, 240});
    QTest::qWait(50);
    EXPECT_EQ(answers, 0);
    other.button(1, false);
    other.moveTo({262, 240});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answer->pixel, QPoint(260, 240));
}

TEST_F(XProbeTest, ALaterQuestionEndsTheEarlierOneAndAnEndOfItLeavesNothingBehind)
{
    ask();
    ask();
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, std::nullopt);
    {
        XProbe second(x, screens);
        second.ask([](std::optional<PointerProbe::Answer>) {});
    }
    other.moveTo({220, 200});
    ASSERT_TRUE(isAnswered(2));
    EXPECT_EQ(pressesAfterAClick(), 1);
}

} // namespace
} // namespace nimbrelle
