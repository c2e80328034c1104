#include "notebook/SlotPlan.h"

#include "support/Printers.h"
#include "support/Words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-15T12:00:00Z"});
constexpr qint64 least = std::numeric_limits<qint64>::min(), most = std::numeric_limits<qint64>::max();

WordEntry word(int id, std::optional<Stage> stage = std::nullopt)
{
    return {
        .id = QUuid(u"0000000%1-0000-0000-0000-000000000000"_s.arg(id)), .createdAt = now, .stage = stage};
}

WordEntry learning(int id, qint64 reps, double stability, std::optional<Timestamp> stateAt)
{
    WordEntry entry = word(id, Stage::learning);
    if (reps > 0)
        entry.review = ReviewState{stability, 5, now, now, reps, 0, 0};
    entry.stateAt = stateAt;
    return entry;
}

TEST(SlotTrim, HandsBackTheLeastInvested)
{
    const QList<WordEntry> words{learning(1, 2, 5, now), learning(2, 1, 9, now), learning(3, 1, 3, now - 1h),
        learning(4, 1, 3, now), learning(5, 0, 0, {}), learning(6, 1, 3, now), word(7, Stage::seen)};
    const QList<QUuid> order{words[4].id, words[3].id, words[5].id, words[2].id, words[1].id, words[0].id};
    EXPECT_EQ(SlotTrim::pick(words, most), order);
    EXPECT_EQ(SlotTrim::pick({words.rbegin(), words.rend()}, 3), order.first(3))
        << "whatever the list's order";
    EXPECT_THAT(SlotTrim::pick(words, 0), IsEmpty());
    EXPECT_THAT(SlotTrim::pick(words, least), IsEmpty());
}

TEST(SlotPlan, LetsInByPriorityAndKeepsOrderAmongEquals)
{
    QList<WordEntry> words{word(1), word(2, Stage::seen), word(3, Stage::mastered), word(4),
        word(5, Stage::resting), word(6), word(7), word(8, Stage::resting)};
    words[3].wantToLearn = true;
    words[4].restUntil = now;
    words[5].createdAt = now - 31 * 24h; // dormant
    words[6].spellPractice = true;
    words[7].restUntil = now + 1s;
    const SlotPlan plan = planSlots(words, {}, 0, 0, now);
    EXPECT_THAT(plan.waking, ElementsAre(4));
    EXPECT_THAT(plan.leaving, IsEmpty());
    EXPECT_THAT(plan.joining, ElementsAre(3, 0, 1, 4));

    words[5].wantToLearn = words[6].wantToLearn = true;
    EXPECT_THAT(planSlots(words, {}, 0, 3, now).joining, ElementsAre(3, 6, 5));
}

TEST(SlotPlan, HoldsTheAllowanceAndTheSlots)
{
    const QList<WordEntry> words(9, word(1));
    const auto joining = [&](qint64 newLearned, qint64 extra, const StudyValues &values = {}) {
        return planSlots(words, configWith(values), newLearned, extra, now).joining.size();
    };
    EXPECT_EQ(joining(0, 0), 8);
    EXPECT_EQ(joining(6, 0), 2);
    EXPECT_EQ(joining(99, -5), 0);
    EXPECT_EQ(joining(8, 3), 3) << "an asked-for number replaces the allowance";
    EXPECT_EQ(joining(0, 99, {.learningSlots = 4}), 4);
    EXPECT_EQ(joining(least, 0, {.learningSlots = most, .dailyNewLimit = most}), 9);
    EXPECT_EQ(joining(0, most, {.learningSlots = least}), 0);
}

} // namespace
