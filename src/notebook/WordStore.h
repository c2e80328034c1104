#pragma once

#include "frame/DamagedFiles.h"
#include "notebook/LearningLog.h"
#include "notebook/Rounds.h"
#include "notebook/SyncBundle.h"
#include "notebook/Unlock.h"
#include "notebook/WordChanges.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QSet>

#include <functional>

namespace nimbrelle {

class AppPaths;
class Clock;
class ConfigStore;
struct Explanation;
struct PageSource;

/// A word after a save, and what the save unlocked.
struct SavedWord {
    WordEntry entry;
    Unlock unlock;
};

/// The one owner of all learning data; every change of it goes through here and is on disk when the call
/// returns, or else the writer tells that the disk did not allow it. What the lists say and what an operation
/// does to a record are pure functions beside it (WordQueries, WordChanges, Encounters, SlotPlan, Rounds);
/// the store holds, saves, logs and notifies. An id or headword that isn't there is no error: the call does
/// nothing. Lists hold the newest first. Ids are taken by value, since callers pass those of the very records
/// that change. Main thread only.
class WordStore : public QObject {
    Q_OBJECT

public:
    /// Asks for a memory aid; throws on failure. Handed in so that the notebook never sees the network.
    using MnemonicRequest =
        std::function<QCoro::Task<QString>(WordEntry word, QStringList knownWords, QStringList interests)>;

    using IdSource = std::function<QUuid()>;

    /// Reads the files and writes nothing.
    WordStore(const AppPaths &paths, const Clock &clock, ConfigStore &config, LearningLog &log,
        MnemonicRequest mnemonicRequest = {}, IdSource makeId = &QUuid::createUuid,
        DataWriter &writer = DataWriter::shared());

    const QList<WordEntry> &entries() const { return m_entries; }
    const QList<AINote> &sentenceNotes() const { return m_sentenceNotes; }
    const QList<GrammarEncounter> &grammarEncounters() const { return m_grammarEncounters; }
    const QList<AffixEncounter> &affixEncounters() const { return m_affixEncounters; }
    const QList<Tombstone> &deleted() const { return m_deleted; }
    const ReviewStats &stats() const { return m_stats; }

    /// @name Finding a word. A pointer is null when there is none, and valid until the next change.
    /// @{
    const WordEntry *find(const QUuid &id) const;
    /// Blanks round the text and letter case aside.
    const WordEntry *findHeadword(const QString &text) const;
    /// The position in entries() of the word of that headword.
    std::optional<qsizetype> index(const QString &text) const;
    /// @}

    /// @name Deleting. Each leaves a tombstone, also when nothing matched, unless `wordId` is unknown.
    /// @{
    void remove(QUuid id);
    void deleteNote(QUuid id, QUuid wordId);
    void deleteExample(QUuid id, QUuid wordId);
    void deleteSentenceNote(QUuid id);
    void deleteGrammarEncounter(QUuid id);
    /// @}

    /// @name Taking a deletion back. The record returns with all that it had to its place by time, `position`
    /// among those of the same time, but under another id, since its own stays buried; that is returned. The
    /// log tells nothing of it.
    /// @{
    /// Makes one word of two with the same headword: of the one that returns, and of one saved meanwhile,
    /// whose id stays.
    using Join = std::function<WordEntry(const WordEntry &returning, const WordEntry &saved)>;

    QUuid restore(WordEntry word, qsizetype position, const Join &join);
    QUuid restoreSentenceNote(AINote note, qsizetype position);
    /// @}

    /// @name Saving and meeting words
    /// @{
    /// Keeps a word; for one already kept it only adds a sentence not seen before.
    SavedWord save(const Explanation &explanation, const PageSource &source);
    /// Folds the meeting with a saved word in; does nothing for an unsaved one.
    Unlock recordLookup(const Explanation &explanation, const PageSource &source);
    void addNote(const AINote &note, const QString &headword);
    void addSentenceNote(const AINote &note);
    /// The other words of its family, in the order of entries().
    QList<WordEntry> family(const WordEntry &entry) const;
    /// What the user reads about: up to five source keys, the most frequent first, then up to eight page
    /// titles.
    QStringList topInterests() const;
    QSet<GrammarPoint> unlockedGrammar() const;
    QSet<Affix> unlockedAffixes() const;
    /// @}

    /// @name The learning set
    /// @{
    qint64 learningCount() const;
    qint64 spellPracticeCount() const;
    /// Wakes rests, trims the set and lets words in; `extra` of 1 or more replaces the daily allowance.
    /// Returns how many joined.
    qint64 fillSlots(qint64 extra);
    /// False when the word is unknown or learning already, or the set is full.
    bool startLearning(QUuid id);
    void setWantToLearn(QUuid id, bool value);
    /// @}

    /// @name Answers
    /// @{
    /// `kind` is what the log calls the answer.
    ReviewOutcome applyReview(QUuid id, Rating rating, LogKind kind);
    /// The new spellLevel; 0 for an unknown word.
    qint64 applySpelling(QUuid id, Rating rating);
    void rest(QUuid id, qint64 days);
    void setSpellPractice(QUuid id, bool on);
    /// Puts a word on the always-spell list, saving it first when it is new.
    WordEntry addSpellPractice(const Explanation &explanation);
    /// Returns at once; a failure is dropped without a word.
    void requestMnemonic(QUuid id);
    /// @}

    /// @name Rounds, in asking order
    /// @{
    /// Fills the slots first; at most sessionSize words, the most forgotten first, then new ones.
    QList<QUuid> buildSession(qint64 extraNew);
    /// What buildSession(0) would lead to at `now`, changing nothing.
    Rounds::Rehearsal rehearseSession(Timestamp now) const;
    qint64 sessionCount(Timestamp now) const { return rehearseSession(now).questions; }
    /// The words of the always-spell list that were spelled least recently.
    QList<QUuid> buildSpellingSession(qint64 size) const;
    /// @}

    /// @name Sync
    /// @{
    SyncBundle snapshot() const;
    void applySync(const SyncBundle &bundle);
    /// @}

signals:
    /// A change of any of the lists or of the counters is about to take effect. It fires in the middle of an
    /// operation, once for each change: a slot must not call the store, but queue.
    void changing();

private:
    using Edit = std::function<void(WordEntry &word)>;

    void put(qsizetype position, const WordEntry &word);
    /// The changed word; null for an unknown id.
    const WordEntry *change(const QUuid &id, const Edit &edit);
    template <class Field> void set(Field &field, const Field &value);
    void count(qint64 ReviewStats::*counter);
    void refreshStatsDay();
    template <class Record> void removeAndBury(QList<Record> &list, QUuid id);
    void bury(QUuid id);
    void writeEntries();

    Unlock recordEncounter(
        WordEntry &word, const Explanation &explanation, const PageSource &source, bool isNewWord);
    void recordGrammar(const Explanation &explanation, const PageSource &source, Unlock &unlock);
    void recordAffixes(const Explanation &explanation, Unlock &unlock);
    QCoro::Task<> fetchMnemonic(WordEntry word, QStringList knownWords, QStringList interests);

    const AppPaths &m_paths;
    const Clock &m_clock;
    ConfigStore &m_config;
    LearningLog &m_log;
    MnemonicRequest m_mnemonicRequest;
    IdSource m_makeId;
    DamagedFiles m_damaged;

    QList<WordEntry> m_entries;
    QList<AINote> m_sentenceNotes;
    QList<GrammarEncounter> m_grammarEncounters;
    QList<AffixEncounter> m_affixEncounters;
    QList<Tombstone> m_deleted;
    ReviewStats m_stats;
};

} // namespace nimbrelle
