#include "frame/RecordFile.h"
#include "notebook/WordStore.h"
#include "support/Printers.h"
#include "sync/Device.h"
#include "sync/RandomLearner.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A bundle with something in every list.
SyncBundle fullBundle(Device &device)
{
    for (quint32 seed = 0; seed < 200; ++seed) {
        device.clock.advance(1s);
        learn(device, seed);
    }
    return device.document();
}

TEST(WordStoreSync, SnapshotAppliedElsewhereIsTheSameNotebookOnDiskToo)
{
    Device from(1), to(2);
    const SyncBundle bundle = fullBundle(from);
    ASSERT_FALSE(bundle.words.isEmpty() || bundle.notes.isEmpty() || bundle.grammar.isEmpty()
        || bundle.affixes.isEmpty() || bundle.deleted.isEmpty() || bundle.log.isEmpty() || !bundle.settings);
    to.clock.set(from.clock.now());
    to.store().applySync(bundle);
    EXPECT_EQ(to.document(), bundle);
    to.restart();
    const SyncBundle read = to.document();
    EXPECT_EQ(read.words.size(), bundle.words.size());
    EXPECT_EQ(read.deleted.size(), bundle.deleted.size());
    EXPECT_EQ(read.log, bundle.log);
    EXPECT_EQ(read.stats, bundle.stats);
    EXPECT_EQ(read.settings, bundle.settings);
}

TEST(WordStoreSync, CountersOfAnotherDayAreLeftOut)
{
    Device device;
    const ReviewStats own = device.store().stats();
    SyncBundle bundle;
    bundle.stats = ReviewStats{u"2026-02-28"_s, 9, 9};
    device.store().applySync(bundle);
    EXPECT_EQ(device.store().stats(), own);
    bundle.stats->day = own.day;
    device.store().applySync(bundle);
    EXPECT_EQ(device.store().stats(), bundle.stats);
    EXPECT_EQ(readRecordFile<ReviewStats>(device.paths.reviewStats), bundle.stats);
}

TEST(WordStoreSync, SettingsThatWereNeverTouchedAreNotOffered)
{
    Device device;
    EXPECT_EQ(device.document().settings, std::nullopt);
    const StudySettings settings{{.learningSlots = 1, .recallOnLookup = false}, device.clock.now()};
    SyncBundle bundle;
    bundle.settings = settings;
    device.store().applySync(bundle);
    EXPECT_EQ(device.document().settings, settings);
    device.store().applySync({});
    EXPECT_EQ(device.document().settings, settings);
}

TEST(WordStoreSync, ObserversAreToldOfEachListBeforeItChanges)
{
    Device device;
    SyncBundle bundle;
    bundle.words = {WordEntry{}};
    int told = 0;
    QObject::connect(&device.store(), &WordStore::changing, &device.store(), [&] {
        if (told++ == 0)
            EXPECT_TRUE(device.store().entries().isEmpty());
    });
    device.store().applySync(bundle);
    EXPECT_EQ(told, 4);
}

} // namespace
