#include "notebook/SlotPlan.h"

#include "frame/AppConfig.h"
#include "frame/DayKey.h"
#include "frame/Saturate.h"
#include "notebook/WordQueries.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace nimbrelle {

namespace {

double stabilityOf(const WordEntry &entry)
{
    return entry.review ? entry.review->stability : 0;
}

qint64 repsOf(const WordEntry &entry)
{
    return entry.review ? entry.review->reps : 0;
}

bool goesBackBefore(const WordEntry *a, const WordEntry *b)
{
    if (repsOf(*a) != repsOf(*b))
        return repsOf(*a) < repsOf(*b);
    if (stabilityOf(*a) != stabilityOf(*b))
        return stabilityOf(*a) < stabilityOf(*b);
    const Timestamp changedA = a->stateAt.value_or(distantPast), changedB = b->stateAt.value_or(distantPast);
    if (changedA != changedB)
        return changedA > changedB;
    return idText(a->id) < idText(b->id);
}

bool isRestOver(const WordEntry &entry, Timestamp now)
{
    return entry.stage == Stage::resting && entry.restUntil.value_or(now) <= now;
}

// A word that is only on the always-spell list takes no place, and a dormant one does not compete.
bool mayJoin(const WordEntry &entry, const AppConfig &config, Timestamp now)
{
    const bool isFree = entry.stage.value_or(Stage::seen) == Stage::seen || isRestOver(entry, now);
    if (!isFree)
        return false;
    if (entry.isWanted())
        return true;
    const bool isAwake = daysBetween(entry.lastContact(), now) <= static_cast<double>(config.dormantDays);
    return isAwake && !entry.isSpellPractice();
}

QList<qsizetype> candidates(
    const QList<WordEntry> &entries, const AppConfig &config, Timestamp now, const MidnightOf &midnightOf)
{
    QList<std::pair<double, qsizetype>> ranked;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (mayJoin(entries[i], config, now))
            ranked.append({priorityOf(entries[i], config, now, midnightOf), i});
    }
    std::stable_sort(
        ranked.begin(), ranked.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    QList<qsizetype> order;
    for (const auto &[priority, position] : std::as_const(ranked))
        order.append(position);
    return order;
}

QList<qsizetype> positionsOf(const QList<QUuid> &ids, const QList<WordEntry> &entries)
{
    if (ids.isEmpty())
        return {};
    QHash<QUuid, qsizetype> positions;
    for (qsizetype i = 0; i < entries.size(); ++i)
        positions.insert(entries[i].id, i);
    QList<qsizetype> found;
    for (const QUuid &id : ids)
        found.append(positions.value(id));
    return found;
}

} // namespace

QList<QUuid> SlotTrim::pick(const QList<WordEntry> &words, qint64 over)
{
    if (over < 1)
        return {};
    QList<const WordEntry *> learning;
    for (const WordEntry &word : words) {
        if (word.stage == Stage::learning)
            learning.append(&word);
    }
    std::stable_sort(learning.begin(), learning.end(), goesBackBefore);
    QList<QUuid> picked;
    for (qsizetype i = 0; i < std::min<qint64>(over, learning.size()); ++i)
        picked.append(learning[i]->id);
    return picked;
}

SlotPlan planSlots(
    const QList<WordEntry> &entries, const AppConfig &config, qint64 newLearned, qint64 extra, Timestamp now)
{
    QHash<QString, std::optional<Timestamp>> midnights; // local-day conversion is the hot spot
    const auto midnight = [&midnights](const QString &day) {
        auto known = midnights.constFind(day);
        if (known == midnights.constEnd())
            known = midnights.insert(day, DayKey::date(day));
        return *known;
    };
    return planSlots(entries, config, newLearned, extra, now, midnight);
}

SlotPlan planSlots(const QList<WordEntry> &entries, const AppConfig &config, qint64 newLearned, qint64 extra,
    Timestamp now, const MidnightOf &midnightOf)
{
    SlotPlan plan;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (isRestOver(entries[i], now))
            plan.waking.append(i);
    }

    const qint64 learning = WordQueries::learningCount(entries);
    plan.leaving =
        positionsOf(SlotTrim::pick(entries, saturatingSubtract(learning, config.learningSlots)), entries);
    const qint64 free = saturatingSubtract(config.learningSlots, learning - plan.leaving.size());
    const qint64 allowance =
        extra >= 1 ? extra : std::max<qint64>(0, saturatingSubtract(config.dailyNewLimit, newLearned));
    if (free < 1 || allowance < 1)
        return plan;
    plan.joining = candidates(entries, config, now, midnightOf);
    plan.joining.resize(std::min<qint64>({free, allowance, plan.joining.size()}));
    return plan;
}

} // namespace nimbrelle
