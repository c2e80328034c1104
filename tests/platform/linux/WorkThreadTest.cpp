#include "platform/linux/WorkThread.h"

#include "frame/Failure.h"
#include "platform/linux/ThreadBackground.h"

#include <QTest>

#include <gtest/gtest.h>
#include <latch>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

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

TEST(ThreadBackground, WorksElsewhereAndHandsOnWhatTheWorkThrows)
{
    ThreadBackground background;
    const auto caller = std::this_thread::get_id();
    QStringList told;
    const auto flow = [&]() -> QCoro::Task<> {
        const std::function<void()> good = [&] {
            told.append(std::this_thread::get_id() != caller ? u"worked"_s : u"in the way"_s);
        };
        const std::function<void()> bad = [] { throw Failure(u"broken"_s); };
        co_await background.run(good);
        try {
            co_await background.run(bad);
        } catch (const Failure &failure) {
            told.append(failure.text());
        }
        EXPECT_EQ(std::this_thread::get_id(), caller);
        told.append(u"ended"_s);
    };
    const auto task = flow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return task.isReady(); }));
    EXPECT_EQ(told, (QStringList{u"worked"_s, u"broken"_s, u"ended"_s}));
}

} // namespace
