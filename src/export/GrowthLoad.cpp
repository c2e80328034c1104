#include "export/GrowthHistory.h"
#include "notebook/Rounds.h"
#include "notebook/SlotPlan.h"
#include "notebook/WordChanges.h"

#include <QDate>
#include <QDateTime>

#include <limits>

// The coming weeks, played through on a copy of the notebook.
namespace nimbrelle::growth {

namespace {

using namespace std::chrono;

constexpr int shownDays = 28;

Timestamp startOf(local_days day, const QTimeZone &zone)
{
    const QDate date = QDate::fromJulianDay(day.time_since_epoch().count() + QDate(1970, 1, 1).toJulianDay());
    return Timestamp{milliseconds{date.startOfDay(zone).toMSecsSinceEpoch()}};
}

class Notebook {
public:
    Notebook(const QList<WordEntry> &words, const AppConfig &config, const QTimeZone &zone)
        : m_words(words), m_config(config), m_zone(zone)
    {
        for (qsizetype i = 0; i < m_words.size(); ++i)
            m_positions.insert(m_words[i].id, i);
    }

    void fillSlots(qint64 newLearned, Timestamp at)
    {
        const SlotPlan plan = planSlots(
            m_words, m_config, newLearned, 0, at, [this](const QString &key) { return midnightOf(key); });
        for (const qsizetype i : plan.waking)
            WordChanges::wake(m_words[i], at);
        for (const qsizetype i : plan.leaving)
            WordChanges::leaveLearning(m_words[i], at);
        for (const qsizetype i : plan.joining)
            WordChanges::joinLearning(m_words[i], at);
    }

    /// What is due by then.
    QList<QUuid> questions(Timestamp at) const
    {
        return Rounds::review(m_words, std::numeric_limits<qint64>::max(), at);
    }

    WordEntry &word(const QUuid &id) { return m_words[m_positions.value(id)]; }

private:
    /// Each key is read once for all days.
    std::optional<Timestamp> midnightOf(const QString &key)
    {
        auto known = m_midnights.constFind(key);
        if (known == m_midnights.constEnd()) {
            const auto day = dayOfKey(key);
            known = m_midnights.insert(key, day ? std::optional(startOf(*day, m_zone)) : std::nullopt);
        }
        return *known;
    }

    QList<WordEntry> m_words;
    const AppConfig &m_config;
    const QTimeZone m_zone;
    QHash<QString, std::optional<Timestamp>> m_midnights;
    QHash<QUuid, qsizetype> m_positions;
};

} // namespace

GrowthLoad load(const GrowthSource &source, Timestamp now, const QTimeZone &zone)
{
    GrowthLoad load;
    Notebook notebook(source.words, source.config, zone);
    const local_days today = LocalTimes(zone).at(now).day;
    const Timestamp thisMorning = startOf(today, zone);
    for (int i = 0; i < shownDays; ++i) {
        GrowthLoad::Day day{.day = today + days{i}};
        const Timestamp evening = startOf(day.day + days{1}, zone) - seconds{1};
        notebook.fillSlots(i == 0 ? source.newLearned : 0, evening);
        for (const QUuid &id : notebook.questions(evening)) {
            WordEntry &word = notebook.word(id);
            load.waiting += i == 0 && word.review && word.review->due < thisMorning ? 1 : 0;
            ++(word.review ? day.due : day.fresh);
            WordChanges::review(word, Rating::good, source.config, evening);
        }
        load.days.append(day);
    }
    return load;
}

} // namespace nimbrelle::growth
