#include "platform/linux/WorkThread.h"

#include <QTest>

#include <gtest/gtest.h>
#include <latch>

using namespace nimbrelle;

namespace {

TEST(WorkThread, WorksInTurnAndComesBackToTheCaller)
{
    WorkThread thread;
    const auto caller = std::this_thread::get_id();
    std::vector<int> worked; // by the one thread, and read once all is done
    std::vector<int> completed;
    for (int i = 0; i < 50; ++i)
        thread.run([&, i]() -> WorkThread::Completion {
            EXPECT_NE(std::this_thread::get_id(), caller);
            worked.push_back(i);
            return [&, i] {
                EXPECT_EQ(std::this_thread::get_id(), caller);
                completed.push_back(i);
            };
        });
    EXPECT_TRUE(completed.empty()) << "only from the event loop";
    ASSERT_TRUE(QTest::qWaitFor([&] { return completed.size() == 50; }));
    EXPECT_EQ(worked, completed);
    EXPECT_TRUE(std::ranges::is_sorted(completed));
}

TEST(WorkThread, EndsAfterThePieceUnderWay)
{
    std::latch isUnderWay(1);
    const auto held = std::make_shared<int>();
    bool isFinished = false;
    bool isDropped = true;
    {
        WorkThread thread;
        thread.run([&, held]() -> WorkThread::Completion {
            isUnderWay.count_down();
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            isFinished = true;
            return [&, held] { isDropped = false; };
        });
        thread.run([&, held]() -> WorkThread::Completion {
            isDropped = false;
            return [] {};
        });
        isUnderWay.wait();
    }
    EXPECT_TRUE(isFinished);
    EXPECT_TRUE(isDropped);
    EXPECT_EQ(held.use_count(), 1) << "nothing is kept";
}

} // namespace
