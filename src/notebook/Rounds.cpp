#include "notebook/Rounds.h"

#include "frame/AppConfig.h"
#include "notebook/SlotPlan.h"
#include "review/FSRS.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle::Rounds {

namespace {

QList<std::optional<Stage>> stagesAfter(const SlotPlan &plan, const QList<WordEntry> &entries)
{
    QList<std::optional<Stage>> stages;
    stages.reserve(entries.size());
    for (const WordEntry &entry : entries)
        stages.append(entry.stage);
    for (const qsizetype i : plan.waking + plan.leaving)
        stages[i] = Stage::seen;
    for (const qsizetype i : plan.joining)
        stages[i] = Stage::learning;
    return stages;
}

// A damaged file can hold a stability that has no recall: such a word counts as forgotten.
double recallOf(const ReviewState &review, Timestamp now)
{
    const double recall = FSRS::retrievability(review, now);
    return std::isnan(recall) ? 0 : recall;
}

// The ids of the `size` least, in order; equal keys keep the notebook's order.
template <class Key>
QList<QUuid> leastOf(QList<std::pair<Key, qsizetype>> keyed, qint64 size, const QList<WordEntry> &entries)
{
    const qsizetype count = std::clamp<qint64>(size, 0, keyed.size());
    std::partial_sort(keyed.begin(), keyed.begin() + count, keyed.end());
    QList<QUuid> ids;
    for (qsizetype i = 0; i < count; ++i)
        ids.append(entries[keyed[i].second].id);
    return ids;
}

// The stage of a position may differ from the word's own, so that a round can be composed for a set that is
// only planned.
template <class StageOf>
QList<QUuid> composeReview(const QList<WordEntry> &entries, StageOf stageOf, qint64 size, Timestamp now)
{
    QList<std::pair<double, qsizetype>> due;
    QList<QUuid> fresh;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const std::optional<Stage> stage = stageOf(i);
        const bool isLearning = stage == Stage::learning;
        if (!isLearning && stage != Stage::mastered)
            continue;
        const auto &review = entries[i].review;
        if (review && review->due <= now)
            due.append({recallOf(*review, now), i});
        else if (!review && isLearning)
            fresh.append(entries[i].id);
    }
    const QList<QUuid> forgotten = leastOf(due, size, entries);
    return forgotten + fresh.first(std::clamp<qint64>(size - forgotten.size(), 0, fresh.size()));
}

} // namespace

QList<QUuid> review(const QList<WordEntry> &entries, qint64 size, Timestamp now)
{
    return composeReview(
        entries, [&entries](qsizetype i) { return entries[i].stage; }, size, now);
}

Rehearsal rehearse(const QList<WordEntry> &entries, const AppConfig &config, qint64 newLearned, Timestamp now)
{
    const auto stages = stagesAfter(planSlots(entries, config, newLearned, 0, now), entries);
    const auto stageOf = [&stages](qsizetype i) { return stages[i]; };
    return {.questions = composeReview(entries, stageOf, config.sessionSize, now).size(),
        .learning = std::ranges::count(stages, std::optional(Stage::learning))};
}

QList<QUuid> spelling(const QList<WordEntry> &entries, qint64 size)
{
    QList<std::pair<std::optional<Timestamp>, qsizetype>> pool; // absent sorts before every moment
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (entries[i].isSpellPractice())
            pool.append({entries[i].lastSpelledAt, i});
    }
    return leastOf(pool, size, entries);
}

} // namespace nimbrelle::Rounds
