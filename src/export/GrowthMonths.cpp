#include "export/GrowthHistory.h"

#include <QDate>
#include <QSet>

#include <algorithm>

// What came month by month, and where the words stood at the end of each.
namespace nimbrelle::growth {

namespace {

using namespace std::chrono;

constexpr months shownMonths{24};
constexpr days usualRest{7};

year_month monthOf(local_days day)
{
    const year_month_day date{day};
    return date.year() / date.month();
}

struct StageChange {
    local_days day;
    Stage stage = Stage::seen;
};

std::optional<Stage> stageAfter(const Activity &activity)
{
    if (!activity.kind)
        return std::nullopt;
    switch (*activity.kind) {
    case LogKind::save:
    case LogKind::leave:
        return Stage::seen;
    case LogKind::join:
        return Stage::learning;
    case LogKind::graduate:
        return Stage::mastered;
    case LogKind::rest:
        return Stage::resting;
    default:
        return std::nullopt;
    }
}

QList<StageChange> stageChanges(const GrowthHistory::Word &word)
{
    QList<StageChange> changes;
    for (const Activity *activity : word.events) {
        if (const auto stage = stageAfter(*activity))
            changes.append({.day = activity->local.day, .stage = *stage});
    }
    return changes;
}

/// Whether the log leads to where the word stands. The end of a rest is not written down.
bool isTraced(const WordEntry &entry, const QList<StageChange> &changes)
{
    const Stage last = changes.isEmpty() ? Stage::seen : changes.last().stage;
    const Stage now = entry.stage.value_or(Stage::seen);
    return last == now || (last == Stage::resting && now == Stage::seen);
}

void count(StageCounts &counts, Stage stage)
{
    counts.learning += stage == Stage::learning ? 1 : 0;
    counts.resting += stage == Stage::resting ? 1 : 0;
    counts.mastered += stage == Stage::mastered ? 1 : 0;
}

/// One row for each month, and one for all that lies before them.
class Rows {
public:
    Rows(local_days first, local_days today)
        : m_first(std::max(monthOf(first), monthOf(today) - shownMonths + months{1}))
        , m_count((monthOf(today) - m_first).count() + 1)
        , m_rows(m_count + 1)
    {
        m_rows[0].month = monthOf(first);
        for (qsizetype i = 0; i < m_count; ++i)
            m_rows[i + 1].month = m_first + months{i};
    }

    qsizetype indexOf(local_days day) const
    {
        return std::clamp<qsizetype>((monthOf(day) - m_first).count() + 1, hasEarlier() ? 0 : 1, m_count);
    }
    GrowthMonth &of(local_days day) { return m_rows[indexOf(day)]; }
    QList<GrowthMonth> &all() { return m_rows; }
    bool hasEarlier() const { return m_rows[0].month < m_first; }

private:
    year_month m_first;
    qsizetype m_count;
    QList<GrowthMonth> m_rows;
};

void countMeetings(Rows &rows, const GrowthHistory &history, const GrowthHistory::Word &word)
{
    QSet<qsizetype> met;
    std::optional<local_days> kept, settled;
    const auto note = [](std::optional<local_days> &first, local_days day) {
        first = std::min(first.value_or(day), day);
    };
    for (const Activity *activity : word.events) {
        const local_days day = activity->local.day;
        if (activity->kind == LogKind::save || activity->kind == LogKind::lookup)
            met.insert(rows.indexOf(day));
        if (activity->kind == LogKind::save)
            note(kept, day);
        if (activity->kind == LogKind::graduate)
            note(settled, day);
    }
    if (word.entry) {
        const local_days created = std::min(history.dayOf(word.entry->createdAt), history.today());
        note(kept, created);
        met.insert(rows.indexOf(created));
        for (const QString &key : word.entry->encounterDays.value_or(QStringList())) {
            if (const auto day = dayOfKey(key); day && *day <= history.today())
                met.insert(rows.indexOf(*day));
        }
    }
    for (const qsizetype row : std::as_const(met))
        ++rows.all()[row].met;
    if (kept)
        ++rows.of(*kept).kept;
    if (settled)
        ++rows.of(*settled).settled;
}

/// Adds the word to the stages of all months but the last.
void countStages(QList<GrowthMonth> &rows, const QList<StageChange> &changes)
{
    auto next = changes.cbegin();
    StageChange at;
    for (qsizetype i = 0; i + 1 < rows.size(); ++i) {
        const local_days end{local_days{(rows[i].month + months{1}) / 1}};
        for (; next != changes.cend() && next->day < end; ++next)
            at = *next;
        const bool isAwake = at.stage == Stage::resting && at.day + usualRest < end;
        if (rows[i].stages)
            count(*rows[i].stages, isAwake ? Stage::seen : at.stage);
    }
}

} // namespace

std::optional<local_days> dayOfKey(const QString &key)
{
    const QDate date = QDate::fromString(key, Qt::ISODate);
    if (!date.isValid())
        return std::nullopt;
    return local_days{days{date.toJulianDay() - QDate(1970, 1, 1).toJulianDay()}};
}

std::optional<std::chrono::local_days> since(const GrowthHistory &history)
{
    std::optional<local_days> first = history.since();
    for (const GrowthHistory::Word &word : history.words()) {
        if (word.entry) {
            const local_days created = history.dayOf(word.entry->createdAt);
            first = std::min(first.value_or(created), created);
        }
    }
    return first ? std::optional(std::min(*first, history.today())) : std::nullopt;
}

GrowthMonths byMonth(const GrowthHistory &history)
{
    GrowthMonths result;
    const auto first = since(history);
    if (!first)
        return result;
    Rows rows(*first, history.today());
    for (const GrowthHistory::Word &word : history.words())
        countMeetings(rows, history, word);
    if (rows.hasEarlier())
        result.earlier = rows.all().first();
    result.months = rows.all().mid(1);

    for (GrowthMonth &row : result.months) {
        if (history.since() && row.month >= monthOf(*history.since()))
            row.stages.emplace();
    }
    StageCounts &today = result.months.last().stages.emplace();
    for (const GrowthHistory::Word &word : history.words()) {
        if (!word.entry)
            continue;
        count(today, word.entry->stage.value_or(Stage::seen));
        const QList<StageChange> changes = stageChanges(word);
        if (isTraced(*word.entry, changes))
            countStages(result.months, changes);
        else
            ++result.untraced;
        const bool isDated = std::ranges::any_of(
            word.events, [](const Activity *activity) { return activity->kind == LogKind::graduate; });
        result.undatedSettled += word.entry->stage == Stage::mastered && !isDated ? 1 : 0;
    }
    return result;
}

} // namespace nimbrelle::growth
