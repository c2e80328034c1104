#include "wordbook/Deletions.h"

#include "frame/Clock.h"
#include "notebook/WordStore.h"
#include "sync/MergeWords.h"

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto offerTime = 10s;

/// As a merge would, so that all devices come to the same word.
WordEntry joined(const WordEntry &returning, const WordEntry &saved)
{
    return SyncMerge::mergeEntry(returning, saved, {});
}

} // namespace

Deletions::Deletions(WordStore &words, Clock &clock) : m_words(words), m_clock(clock) { }

void Deletions::remove(const Place &place)
{
    if (auto deleted = recordOf(place))
        m_deleted.append(*std::move(deleted));
    if (place.tab == WordListTab::words)
        m_words.remove(place.id);
    else
        m_words.deleteSentenceNote(place.id);
    offer();
}

template <class Record>
std::optional<Deletions::Deleted> Deletions::recordOf(const Place &place, const QList<Record> &records)
{
    const auto found = std::ranges::find(records, place.id, &Record::id);
    if (found == records.cend())
        return std::nullopt;
    return Deleted{.place = place, .position = found - records.cbegin(), .record = *found};
}

std::optional<Deletions::Deleted> Deletions::recordOf(const Place &place) const
{
    return place.tab == WordListTab::words ? recordOf(place, m_words.entries())
                                           : recordOf(place, m_words.sentenceNotes());
}

QString Deletions::text() const
{
    if (m_deleted.isEmpty())
        return {};
    const auto &record = m_deleted.last().record;
    const auto *word = std::get_if<WordEntry>(&record);
    return u"已删除 "_s + (word ? word->headword : noteRow(std::get<AINote>(record)).title);
}

std::optional<Deletions::Place> Deletions::undo()
{
    if (m_deleted.isEmpty())
        return std::nullopt;
    const Deleted deleted = m_deleted.takeLast();
    Place place = deleted.place;
    place.id = restore(deleted);
    offer();
    return place;
}

QUuid Deletions::restore(const Deleted &deleted)
{
    const auto *word = std::get_if<WordEntry>(&deleted.record);
    return word ? m_words.restore(*word, deleted.position, joined)
                : m_words.restoreSentenceNote(std::get<AINote>(deleted.record), deleted.position);
}

void Deletions::offer()
{
    withdrawLater(m_withdrawal.renew());
    emit changed();
}

QCoro::Task<> Deletions::withdrawLater(std::stop_token stop)
{
    co_await m_clock.sleep(offerTime, stop);
    if (stop.stop_requested())
        co_return;
    m_deleted.clear();
    emit changed();
}

} // namespace nimbrelle
