#include "notebook/WordStore.h"

#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/DayKey.h"
#include "frame/RecordFile.h"
#include "frame/Saturate.h"
#include "notebook/WordQueries.h"

#include <algorithm>

namespace nimbrelle {

namespace {

template <class Record> QList<Record> readList(const QString &path, DamagedFiles &damaged)
{
    return readRecordFile<QList<Record>>(path, damaged).value_or(QList<Record>());
}

/// Into a list with the newest first, at `position` or as near to it as the order allows.
template <class Record>
void insertByTime(QList<Record> &list, const Record &record, Timestamp Record::*time, qsizetype position)
{
    const auto placeOf = [&](auto isBehind) {
        return std::ranges::find_if(list, isBehind, time) - list.begin();
    };
    const qsizetype first = placeOf([&](Timestamp other) { return other <= record.*time; });
    const qsizetype last = placeOf([&](Timestamp other) { return other < record.*time; });
    list.insert(std::clamp(position, first, last), record);
}

ReviewStats freshStats(Timestamp now)
{
    return {.day = DayKey::string(now)};
}

} // namespace

WordStore::WordStore(const AppPaths &paths, const Clock &clock, ConfigStore &config, LearningLog &log,
    MnemonicRequest mnemonicRequest, IdSource makeId, DataWriter &writer)
    : m_paths(paths)
    , m_clock(clock)
    , m_config(config)
    , m_log(log)
    , m_mnemonicRequest(std::move(mnemonicRequest))
    , m_makeId(std::move(makeId))
    , m_damaged(clock, writer)
    , m_entries(readList<WordEntry>(paths.words, m_damaged))
    , m_sentenceNotes(readList<AINote>(paths.notes, m_damaged))
    , m_grammarEncounters(readList<GrammarEncounter>(paths.grammar, m_damaged))
    , m_affixEncounters(readList<AffixEncounter>(paths.affixes, m_damaged))
    , m_deleted(readList<Tombstone>(paths.deleted, m_damaged))
    , m_stats(freshStats(clock.now()))
{
    const auto stored = readRecordFile<ReviewStats>(paths.reviewStats, m_damaged);
    if (stored && stored->day == m_stats.day)
        m_stats = *stored;
}

const WordEntry *WordStore::find(const QUuid &id) const
{
    const auto found = WordQueries::index(m_entries, id);
    return found ? &m_entries[*found] : nullptr;
}

const WordEntry *WordStore::findHeadword(const QString &text) const
{
    const auto found = index(text);
    return found ? &m_entries[*found] : nullptr;
}

std::optional<qsizetype> WordStore::index(const QString &text) const
{
    return WordQueries::index(m_entries, text);
}

// Operations change a copy and put it back, so that an observer that copies the list in its slot keeps what
// it copied.
void WordStore::put(qsizetype position, const WordEntry &word)
{
    emit changing();
    m_entries[position] = word;
}

const WordEntry *WordStore::change(const QUuid &id, const Edit &edit)
{
    const auto found = WordQueries::index(m_entries, id);
    if (!found)
        return nullptr;
    WordEntry word = m_entries[*found];
    edit(word);
    put(*found, word);
    return &m_entries.at(*found);
}

template <class Field> void WordStore::set(Field &field, const Field &value)
{
    emit changing();
    field = value;
}

void WordStore::count(qint64 ReviewStats::*counter)
{
    emit changing();
    m_stats.*counter = saturatingAdd(m_stats.*counter, 1);
}

// Not written here: yesterday's file is passed over at the next start.
void WordStore::refreshStatsDay()
{
    const ReviewStats today = freshStats(m_clock.now());
    if (m_stats.day != today.day)
        set(m_stats, today);
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
    m_deleted.append({.id = idText(id), .at = m_clock.now()});
    writeRecordFile(m_paths.deleted, m_deleted, m_damaged);
}

void WordStore::writeEntries()
{
    writeRecordFile(m_paths.words, m_entries, m_damaged);
}

void WordStore::remove(QUuid id)
{
    removeAndBury(m_entries, id);
    writeEntries();
}

void WordStore::deleteNote(QUuid id, QUuid wordId)
{
    const bool isKnown = change(wordId, [&id](WordEntry &word) {
        if (word.notes)
            word.notes->removeIf([&id](const AINote &note) { return note.id == id; });
    });
    if (!isKnown)
        return;
    bury(id);
    writeEntries();
}

void WordStore::deleteExample(QUuid id, QUuid wordId)
{
    const bool isKnown = change(wordId, [&id](WordEntry &word) {
        word.examples.removeIf([&id](const Example &example) { return example.id == id; });
    });
    if (!isKnown)
        return;
    bury(id);
    writeEntries();
}

void WordStore::deleteSentenceNote(QUuid id)
{
    removeAndBury(m_sentenceNotes, id);
    writeRecordFile(m_paths.notes, m_sentenceNotes, m_damaged);
}

void WordStore::deleteGrammarEncounter(QUuid id)
{
    removeAndBury(m_grammarEncounters, id);
    writeRecordFile(m_paths.grammar, m_grammarEncounters, m_damaged);
}

QUuid WordStore::restore(WordEntry word, qsizetype position, const Join &join)
{
    const auto saved = index(word.headword);
    word.id = saved ? m_entries[*saved].id : m_makeId();
    QList<WordEntry> entries = m_entries;
    if (saved)
        word = join(word, entries.takeAt(*saved));
    insertByTime(entries, word, &WordEntry::createdAt, position);
    set(m_entries, entries);
    writeEntries();
    return word.id;
}

QUuid WordStore::restoreSentenceNote(AINote note, qsizetype position)
{
    note.id = m_makeId();
    QList<AINote> notes = m_sentenceNotes;
    insertByTime(notes, note, &AINote::addedAt, position);
    set(m_sentenceNotes, notes);
    writeRecordFile(m_paths.notes, m_sentenceNotes, m_damaged);
    return note.id;
}

SyncBundle WordStore::snapshot() const
{
    return {.words = m_entries,
        .notes = m_sentenceNotes,
        .grammar = m_grammarEncounters,
        .affixes = m_affixEncounters,
        .deleted = m_deleted,
        .log = m_log.readLines(),
        .stats = m_stats,
        .settings = m_config.config().studySettings()};
}

void WordStore::applySync(const SyncBundle &bundle)
{
    set(m_entries, bundle.words);
    set(m_sentenceNotes, bundle.notes);
    set(m_grammarEncounters, bundle.grammar);
    set(m_affixEncounters, bundle.affixes);
    m_deleted = bundle.deleted;
    // The counters of another day are left out, so that today's start clean.
    if (bundle.stats && bundle.stats->day == DayKey::string(m_clock.now()))
        set(m_stats, *bundle.stats);

    writeEntries();
    writeRecordFile(m_paths.notes, m_sentenceNotes, m_damaged);
    writeRecordFile(m_paths.grammar, m_grammarEncounters, m_damaged);
    writeRecordFile(m_paths.affixes, m_affixEncounters, m_damaged);
    writeRecordFile(m_paths.deleted, m_deleted, m_damaged);
    writeRecordFile(m_paths.reviewStats, m_stats, m_damaged);
    m_log.replaceAll(bundle.log);
    if (bundle.settings && bundle.settings != m_config.config().studySettings())
        m_config.applySync(*bundle.settings);
}

} // namespace nimbrelle
