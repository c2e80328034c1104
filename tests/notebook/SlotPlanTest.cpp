#include "notebook/SlotPlan.h"

#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

using namespace nimbrelle;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-15T12:00:00Z"});

WordEntry word(const char *id, std::optional<Stage> stage)
{
    WordEntry entry;
    entry.id = QUuid(QStringLiteral("0000000%1-0000-0000-0000-000000000000").arg(QString::fromLatin1(id)));
    entry.headword = QString::fromLatin1(id);
    entry.stage = stage;
    entry.createdAt = now;
    return entry;
}

WordEntry learning(const char *id, qint64 reps, double stability, std::optional<Timestamp> stateAt)
{
    WordEntry entry = word(id, Stage::learning);
    if (reps > 0)
        entry.review = ReviewState{stability, 5, now, now, reps, 0, 0};
    entry.stateAt = stateAt;
    return entry;
}

TEST(SlotTrim, HandsBackTheLeastInvested)
{
    const QList<WordEntry> words{learning("1", 2, 5, now), learning("2", 1, 9, now),
        learning("3", 1, 3, now - 1h), learning("4", 1, 3, now), learning("5", 0, 0, {}),
        learning("6", 1, 3, now), word("7", Stage::seen)};
    const QList<QUuid> order{words[4].id, words[3].id, words[5].id, words[2].id, words[1].id, words[0].id};
    EXPECT_EQ(SlotTrim::pick(words, 99), order);
    EXPECT_EQ(SlotTrim::pick({words.rbegin(), words.rend()}, 3), order.first(3))
        << "whatever the list's order";
    EXPECT_THAT(SlotTrim::pick(words, 0), IsEmpty());
    EXPECT_THAT(SlotTrim::pick(words, std::numeric_limits<qint64>::min()), IsEmpty());
    EXPECT_EQ(SlotTrim::pick(words, std::numeric_limits<qint64>::max()).size(), 6);
}

TEST(SlotPlan, LetsInByPriorityAndKeepsOrderAmongEquals)
{
    QList<WordEntry> words{word("1", {}), word("2", Stage::seen), word("3", Stage::mastered), word("4", {}),
        word("5", Stage::resting), word("6", {}), word("7", {}), word("8", Stage::resting)};
    words[3].wantToLearn = true;
    words[4].restUntil = now;
    words[5].createdAt = now - 31 * 24h; // dormant
    words[6].spellPractice = true;
    words[7].restUntil = now + 1s;
    const SlotPlan plan = planSlots(words, AppConfig(), 0, 0, now);
    EXPECT_THAT(plan.waking, ElementsAre(4));
    EXPECT_THAT(plan.leaving, IsEmpty());
    EXPECT_THAT(plan.joining, ElementsAre(3, 0, 1, 4));

    words[5].wantToLearn = words[6].wantToLearn = true;
    EXPECT_THAT(planSlots(words, AppConfig(), 0, 3, now).joining, ElementsAre(3, 6, 5));
}

TEST(SlotPlan, HoldsTheAllowanceAndTheSlots)
{
    QList<WordEntry> words;
    for (int i = 0; i < 9; ++i)
        words.append(word("1", {}));
    AppConfig config;
    const auto joining = [&](qint64 newLearned, qint64 extra) {
        return planSlots(words, config, newLearned, extra, now).joining.size();
    };
    EXPECT_EQ(joining(0, 0), 8);
    EXPECT_EQ(joining(6, 0), 2);
    EXPECT_EQ(joining(8, 0), 0);
    EXPECT_EQ(joining(99, -5), 0);
    EXPECT_EQ(joining(8, 3), 3) << "an asked-for number replaces the allowance";
    config.learningSlots = 4;
    EXPECT_EQ(joining(0, 99), 4);

    constexpr qint64 least = std::numeric_limits<qint64>::min(), most = std::numeric_limits<qint64>::max();
    config.learningSlots = config.dailyNewLimit = most;
    EXPECT_EQ(joining(least, 0), 9);
    config.learningSlots = least;
    EXPECT_EQ(joining(0, most), 0);
}

TEST(WordStoreSlots, HandsBackWhenTheLimitIsLowered)
{
    Notebook notebook;
    for (const char *headword : {"one", "two", "three"})
        notebook.save(headword);
    EXPECT_EQ(notebook.store.fillSlots(0), 3);
    EXPECT_EQ(notebook.store.stats().newLearned, 3);
    notebook.configure([](AppConfig &config) { config.learningSlots = 1; });
    notebook.clock.advance(1h);
    EXPECT_EQ(notebook.store.fillSlots(5), 0);
    EXPECT_EQ(notebook.store.learningCount(), 1);
    EXPECT_EQ(notebook.events().filter(QStringLiteral("leave")).size(), 2);
    EXPECT_EQ(notebook.entriesOnDisk(), notebook.store.entries());
    EXPECT_EQ(readRecordFile<ReviewStats>(notebook.paths.reviewStats)->newLearned, 3);
}

TEST(WordStoreSlots, StartsLearningByHandOnlyWithAFreeSlot)
{
    Notebook notebook;
    const QUuid run = notebook.save("run"), walk = notebook.save("walk");
    notebook.configure([](AppConfig &config) { config.learningSlots = 1; });
    notebook.store.rest(run, 7);
    EXPECT_TRUE(notebook.store.startLearning(run));
    EXPECT_EQ(notebook.word("run").restUntil, std::nullopt);
    EXPECT_EQ(notebook.word("run").stateAt, notebook.clock.now());
    EXPECT_FALSE(notebook.store.startLearning(run));
    EXPECT_FALSE(notebook.store.startLearning(walk));
    EXPECT_FALSE(notebook.store.startLearning(QUuid()));
    EXPECT_EQ(notebook.store.stats().newLearned, 0);
    EXPECT_EQ(notebook.events().last(), QStringLiteral("join run manual"));

    notebook.store.setWantToLearn(walk, true);
    EXPECT_EQ(notebook.word("walk").wantToLearn, true);
    notebook.store.setWantToLearn(walk, false);
    EXPECT_EQ(notebook.word("walk").wantToLearn, std::nullopt);
    EXPECT_EQ(notebook.entriesOnDisk(), notebook.store.entries());
}

} // namespace
