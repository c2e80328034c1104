#include "sync/Device.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;

namespace {

struct SyncScheduleTest : testing::Test {
    MemoryServer server;
    Device computer{1};
    Device phone{2};
};

TEST_F(SyncScheduleTest, NothingIsAskedBeforeWhatIsToBeDoneFirst)
{
    computer.store().addSentenceNote({});
    for (const bool isEndedMeanwhile : {false, true}) {
        auto service = std::make_unique<SyncService>(computer.store(), computer.config(), computer.paths,
            computer.clock, computer.network.connect(), DataWriter::shared(),
            [this] { return computer.clock.sleep(1s, {}); });
        service->syncNow();
        EXPECT_TRUE(service->busy());
        EXPECT_EQ(computer.network.sessions, 0);
        if (isEndedMeanwhile)
            service.reset();
        computer.clock.advance(1s);
        EXPECT_EQ(computer.network.isWaiting(), !isEndedMeanwhile);
        service.reset();
        computer.network.sessions = 0;
    }
}

TEST_F(SyncScheduleTest, StartsWithARoundAndRepeatsItEveryTenMinutes)
{
    computer.sync().start();
    EXPECT_EQ(computer.network.sessions, 1);
    computer.network.serve(server);
    computer.clock.advance(599s);
    EXPECT_EQ(computer.network.sessions, 1);
    for (int tick = 0; tick < 3; ++tick) {
        computer.clock.advance(tick == 0 ? 1s : 600s);
        EXPECT_EQ(computer.network.sessions, 2 + tick);
        computer.network.serve(server);
    }
}

TEST_F(SyncScheduleTest, ABurstOfChangesIsOneRoundFiveSecondsAfterTheLast)
{
    computer.sync().start();
    computer.network.serve(server);
    for (int i = 0; i < 10; ++i) {
        computer.clock.advance(400ms);
        computer.store().addSentenceNote({});
        EXPECT_EQ(computer.network.sessions, 1); // told in mid-operation, so nothing runs yet
    }
    computer.clock.advance(4999ms);
    EXPECT_EQ(computer.network.sessions, 1);
    computer.clock.advance(1ms);
    EXPECT_EQ(computer.network.sessions, 2);
    computer.network.serve(server);
    computer.clock.advance(60s);
    EXPECT_EQ(computer.network.sessions, 2);
}

TEST_F(SyncScheduleTest, StudySettingsTravelAndAMergeStartsNoRoundOfItsOwn)
{
    phone.sync().start();
    phone.network.serve(server);
    AppConfig config = computer.config().config();
    config.learningSlots = 50;
    config.dwellSeconds = 3;
    computer.config().setConfig(config);
    computer.store().addSentenceNote({});
    computer.syncWith(server);
    phone.syncWith(server);
    EXPECT_EQ(phone.config().config().learningSlots, 50);
    EXPECT_EQ(phone.config().config().dwellSeconds, 1);
    EXPECT_EQ(phone.config().config().studySettingsAt, computer.config().config().studySettingsAt);
    const int sessions = phone.network.sessions;
    phone.clock.advance(60s);
    EXPECT_EQ(phone.network.sessions, sessions);

    config = phone.config().config();
    config.dwellSeconds = 2;
    phone.config().setConfig(config);
    phone.clock.advance(60s);
    EXPECT_EQ(phone.network.sessions, sessions);
    config.sessionSize = 3;
    phone.config().setConfig(config);
    phone.clock.advance(5s);
    EXPECT_EQ(phone.network.sessions, sessions + 1);
}

} // namespace
