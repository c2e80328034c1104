#include "notebook/WordStore.h"

#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/DayKey.h"
#include "frame/RecordFile.h"
#include "frame/Text.h"

#include <algorithm>

namespace nimbrelle {

WordStore::WordStore(const AppPaths &paths, const Clock &clock, ConfigStore &config, LearningLog &log,
    MnemonicRequest mnemonicRequest, IdSource makeId)
    : m_paths(paths)
    , m_clock(clock)
    , m_config(config)
    , m_log(log)
    , m_mnemonicRequest(std::move(mnemonicRequest))
    , m_makeId(std::move(makeId))
    , m_entries(readRecordFile<QList<WordEntry>>(paths.words).value_or(QList<WordEntry>()))
    , m_sentenceNotes(readRecordFile<QList<AINote>>(paths.notes).value_or(QList<AINote>()))
    , m_grammarEncounters(
          readRecordFile<QList<GrammarEncounter>>(paths.grammar).value_or(QList<GrammarEncounter>()))
    , m_affixEncounters(
          readRecordFile<QList<AffixEncounter>>(paths.affixes).value_or(QList<AffixEncounter>()))
    , m_deleted(readRecordFile<QList<Tombstone>>(paths.deleted).value_or(QList<Tombstone>()))
    , m_stats(freshStats())
{
    const auto stored = readRecordFile<ReviewStats>(paths.reviewStats);
    if (stored && stored->day == m_stats.day)
        m_stats = *stored;
}

std::optional<qsizetype> WordStore::index(const QString &text) const
{
    const QString wanted = trimmedBlanks(text).toLower();
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
        [&wanted](const WordEntry &entry) { return entry.headword.toLower() == wanted; });
    return found == m_entries.cend() ? std::nullopt : std::optional(found - m_entries.cbegin());
}

std::optional<qsizetype> WordStore::position(const QUuid &id) const
{
    const auto found = std::find_if(
        m_entries.cbegin(), m_entries.cend(), [&id](const WordEntry &entry) { return entry.id == id; });
    return found == m_entries.cend() ? std::nullopt : std::optional(found - m_entries.cbegin());
}

const WordEntry *WordStore::find(const QUuid &id) const
{
    const auto found = position(id);
    return found ? &m_entries[*found] : nullptr;
}

// Operations change a copy and put it back: an observer that takes the list while it is told keeps what it
// took.
void WordStore::put(qsizetype position, const WordEntry &word)
{
    emit changing();
    m_entries[position] = word;
}

ReviewStats WordStore::freshStats() const
{
    return {DayKey::string(m_clock.now()), 0, 0};
}

// Not written here: yesterday's file is passed over at the next start.
void WordStore::refreshStatsDay()
{
    const ReviewStats today = freshStats();
    if (m_stats.day == today.day)
        return;
    emit changing();
    m_stats = today;
}

template <class Record> void WordStore::removeAndBury(QList<Record> &list, QUuid id)
{
    emit changing();
    list.removeIf([&id](const Record &record) { return record.id == id; });
    bury(id);
}

// On disk before the deletion itself, so that no crash lets a merge bring the thing back.
void WordStore::bury(QUuid id)
{
    m_deleted.append({idText(id), m_clock.now()});
    writeDeleted();
}

void WordStore::remove(QUuid id)
{
    removeAndBury(m_entries, id);
    writeEntries();
}

void WordStore::deleteNote(QUuid id, QUuid wordId)
{
    const auto found = position(wordId);
    if (!found)
        return;
    WordEntry word = m_entries[*found];
    if (word.notes)
        word.notes->removeIf([&id](const AINote &note) { return note.id == id; });
    put(*found, word);
    bury(id);
    writeEntries();
}

void WordStore::deleteExample(QUuid id, QUuid wordId)
{
    const auto found = position(wordId);
    if (!found)
        return;
    WordEntry word = m_entries[*found];
    word.examples.removeIf([&id](const Example &example) { return example.id == id; });
    put(*found, word);
    bury(id);
    writeEntries();
}

void WordStore::deleteSentenceNote(QUuid id)
{
    removeAndBury(m_sentenceNotes, id);
    writeSentenceNotes();
}

void WordStore::deleteGrammarEncounter(QUuid id)
{
    removeAndBury(m_grammarEncounters, id);
    writeGrammar();
}

void WordStore::writeEntries() const
{
    writeRecordFile(m_paths.words, m_entries);
}

void WordStore::writeSentenceNotes() const
{
    writeRecordFile(m_paths.notes, m_sentenceNotes);
}

void WordStore::writeGrammar() const
{
    writeRecordFile(m_paths.grammar, m_grammarEncounters);
}

void WordStore::writeAffixes() const
{
    writeRecordFile(m_paths.affixes, m_affixEncounters);
}

void WordStore::writeDeleted() const
{
    writeRecordFile(m_paths.deleted, m_deleted);
}

void WordStore::writeStats() const
{
    writeRecordFile(m_paths.reviewStats, m_stats);
}

} // namespace nimbrelle
