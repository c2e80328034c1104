#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/Saturate.h"
#include "notebook/LearningLog.h"
#include "notebook/SlotPlan.h"
#include "notebook/WordStore.h"

#include <algorithm>

// The learning set of the store: what fills it and what the user puts into it by hand.
namespace nimbrelle {

qint64 WordStore::learningCount() const
{
    return std::count_if(m_entries.cbegin(), m_entries.cend(),
        [](const WordEntry &entry) { return entry.stage == Stage::learning; });
}

qint64 WordStore::spellPracticeCount() const
{
    return std::count_if(
        m_entries.cbegin(), m_entries.cend(), [](const WordEntry &entry) { return entry.isSpellPractice(); });
}

qint64 WordStore::fillSlots(qint64 extra)
{
    const Timestamp now = m_clock.now();
    refreshStatsDay();
    const SlotPlan plan = planSlots(m_entries, m_config.config(), m_stats.newLearned, extra, now);

    const auto move = [this, now](qsizetype position, void (*to)(WordEntry &, Timestamp)) {
        WordEntry word = m_entries[position];
        to(word, now);
        put(position, word);
    };

    for (const qsizetype position : plan.waking)
        move(position, wake);
    for (const qsizetype position : plan.leaving) {
        move(position, leaveLearning);
        m_log.add(QStringLiteral("leave"), m_entries[position].headword);
    }
    if (!plan.leaving.isEmpty())
        writeEntries();

    for (const qsizetype position : plan.joining) {
        move(position, joinLearning);
        emit changing();
        m_stats.newLearned = saturatingAdd(m_stats.newLearned, 1);
        m_log.add(QStringLiteral("join"), m_entries[position].headword);
    }
    if (!plan.joining.isEmpty()) {
        writeEntries();
        writeStats();
    }
    return plan.joining.size();
}

bool WordStore::startLearning(QUuid id)
{
    const auto found = position(id);
    if (!found || m_entries[*found].stage == Stage::learning
        || learningCount() >= m_config.config().learningSlots)
        return false;
    WordEntry word = m_entries[*found];
    joinLearning(word, m_clock.now());
    word.restUntil.reset();
    put(*found, word);
    m_log.add(QStringLiteral("join"), word.headword, QStringLiteral("manual"));
    writeEntries();
    return true;
}

void WordStore::setWantToLearn(QUuid id, bool value)
{
    const auto found = position(id);
    if (!found)
        return;
    WordEntry word = m_entries[*found];
    word.wantToLearn = value ? std::optional(true) : std::nullopt;
    word.stateAt = m_clock.now();
    put(*found, word);
    writeEntries();
}

} // namespace nimbrelle
