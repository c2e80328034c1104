#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/DayKey.h"
#include "notebook/SlotPlan.h"
#include "notebook/WordStore.h"
#include "review/FSRS.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle {

namespace {

using Stages = QList<std::optional<Stage>>;

Stages stagesOf(const QList<WordEntry> &entries)
{
    Stages stages;
    stages.reserve(entries.size());
    for (const WordEntry &entry : entries)
        stages.append(entry.stage);
    return stages;
}

void follow(const SlotPlan &plan, Stages &stages)
{
    for (const qsizetype i : plan.waking + plan.leaving)
        stages[i] = Stage::seen;
    for (const qsizetype i : plan.joining)
        stages[i] = Stage::learning;
}

// A damaged file can hold a stability that has no recall: such a word counts as forgotten.
double recallOf(const ReviewState &review, Timestamp now)
{
    const double recall = FSRS::retrievability(review, now);
    return std::isnan(recall) ? 0 : recall;
}

// The ids at the positions, in the order of their keys; equal keys keep the notebook's order.
template <class Key>
void appendSorted(QList<QUuid> &ids, QList<std::pair<Key, qsizetype>> keyed, const QList<WordEntry> &entries)
{
    std::stable_sort(
        keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    for (const auto &[key, position] : std::as_const(keyed))
        ids.append(entries[position].id);
}

QList<QUuid> cut(QList<QUuid> ids, qint64 size)
{
    ids.resize(std::clamp<qint64>(size, 0, ids.size()));
    return ids;
}

// The due words, the most forgotten first, then the new ones in the notebook's order. `stages` stands for
// the stages of `entries`, so that a round can be composed for a learning set that is only planned.
QList<QUuid> composeRound(const QList<WordEntry> &entries, const Stages &stages, qint64 size, Timestamp now)
{
    QList<std::pair<double, qsizetype>> due;
    QList<QUuid> fresh;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const bool isLearning = stages[i] == Stage::learning;
        if (!isLearning && stages[i] != Stage::mastered)
            continue;
        const auto &review = entries[i].review;
        if (review && review->due <= now)
            due.append({recallOf(*review, now), i});
        else if (!review && isLearning)
            fresh.append(entries[i].id);
    }
    QList<QUuid> ids;
    appendSorted(ids, due, entries);
    return cut(ids + fresh, size);
}

} // namespace

QList<QUuid> WordStore::buildSession(qint64 extraNew)
{
    fillSlots(extraNew);
    return composeRound(m_entries, stagesOf(m_entries), m_config.config().sessionSize, m_clock.now());
}

qint64 WordStore::sessionCount(Timestamp now) const
{
    const AppConfig &config = m_config.config();
    const qint64 newLearned = m_stats.day == DayKey::string(now) ? m_stats.newLearned : 0;
    Stages stages = stagesOf(m_entries);
    follow(planSlots(m_entries, config, newLearned, 0, now), stages);
    return composeRound(m_entries, stages, config.sessionSize, now).size();
}

QList<QUuid> WordStore::buildSpellingSession(qint64 size) const
{
    QList<std::pair<std::optional<Timestamp>, qsizetype>> pool; // absent sorts before every moment
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].isSpellPractice())
            pool.append({m_entries[i].lastSpelledAt, i});
    }
    QList<QUuid> ids;
    appendSorted(ids, pool, m_entries);
    return cut(ids, size);
}

} // namespace nimbrelle
