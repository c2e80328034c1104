#include "platform/linux/wayland/MarkDetector.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

class FakeProbe final : public PointerProbe {
public:
    bool isOffered() const override { return true; }
    void ask(std::function<void(std::optional<Answer>)> answered) override
    {
        ++questions;
        m_answered = std::move(answered);
    }
    void answer(std::optional<Answer> told)
    {
        if (const auto answered = std::exchange(m_answered, {}))
            answered(told);
    }

    int questions = 0;

private:
    std::function<void(std::optional<Answer>)> m_answered;
};

} // namespace

class MarkDetectorTest : public testing::Test {
protected:
    MarkDetectorTest()
    {
        QObject::connect(&detector, &MarkDetector::began, &detector, [this] { ++begun; });
        QObject::connect(
            &detector, &MarkDetector::marked, &detector, [this](QPoint pixel) { marked.append(pixel); });
    }

    /// A press of Shift and an arrow, with the mouse left alone at `pixel`.
    void markByKey(QPoint pixel)
    {
        detector.claimed();
        probe.answer({{.pixel = pixel, .waited = 1ms}});
    }

    ManualClock clock;
    FakeProbe probe;
    MarkDetector detector{clock, probe};
    int begun = 0;
    QList<QPoint> marked;
};

TEST_F(MarkDetectorTest, ADragIsOneMarkAtItsRelease)
{
    for (int move = 0; move < 5; ++move)
        detector.claimed();
    EXPECT_EQ(probe.questions, 1);
    EXPECT_EQ(begun, 5);
    EXPECT_TRUE(marked.isEmpty());
    probe.answer({{.pixel = {300, 200}, .waited = 400ms}});
    EXPECT_EQ(marked, QList<QPoint>({{300, 200}}));
    detector.claimed();
    probe.answer({{.pixel = {300, 200}, .waited = 60ms}});
    EXPECT_EQ(marked.size(), 2) << "a double click where the last mark ended";
    detector.claimed();
    probe.answer({{.pixel = {340, 200}, .waited = 1ms}});
    EXPECT_EQ(marked.size(), 3) << "claimed after the release, elsewhere";
}

TEST_F(MarkDetectorTest, KeysMarkOnceTheyRest)
{
    detector.notePointer({300, 200});
    for (int key = 0; key < 6; ++key) {
        markByKey({300, 200});
        clock.advance(300ms);
    }
    EXPECT_TRUE(marked.isEmpty()) << "no card while keys are pressed";
    EXPECT_EQ(begun, 6);
    clock.advance(199ms);
    EXPECT_EQ(probe.questions, 1);
    clock.advance(1ms);
    probe.answer({{.pixel = {300, 200}, .waited = 1ms}});
    EXPECT_EQ(marked, QList<QPoint>({{300, 200}}));
    clock.advance(5s);
    EXPECT_EQ(marked.size(), 1);
}

TEST_F(MarkDetectorTest, WhatTheDesktopDoesNotTellIsNoMark)
{
    detector.claimed();
    probe.answer(std::nullopt);
    EXPECT_TRUE(marked.isEmpty());
    detector.claimed();
    detector.cancel();
    probe.answer({{.pixel = {300, 200}, .waited = 400ms}});
    EXPECT_TRUE(marked.isEmpty());
    detector.claimed();
    probe.answer({{.pixel = {300, 200}, .waited = 400ms}});
    EXPECT_EQ(marked.size(), 1);
}

} // namespace nimbrelle
