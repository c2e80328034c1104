#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "frame/Saturate.h"
#include "frame/Text.h"
#include "notebook/Encounters.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "notebook/WordQueries.h"
#include "notebook/WordStore.h"

// Saving words, looking them up, and what is kept with them.
namespace nimbrelle {

SavedWord WordStore::save(const Explanation &explanation, const PageSource &source)
{
    Example example = Encounters::newExample(explanation, source, m_clock.now());
    example.id = m_makeId();
    if (const auto known = index(explanation.headword)) {
        WordEntry word = m_entries[*known];
        if (Encounters::addExample(word, example))
            put(*known, word);
        writeEntries();
        return {.entry = word, .unlock = {}};
    }

    WordEntry word = Encounters::newWord(explanation, example);
    word.id = m_makeId();
    Encounters::mark(word, source, m_clock.now());
    Unlock unlock = recordEncounter(word, explanation, source, true);
    emit changing();
    m_entries.prepend(word);
    writeEntries();
    m_log.add(LogKind::save, explanation.headword, source.sourceKey());
    return {.entry = word, .unlock = std::move(unlock)};
}

Unlock WordStore::recordLookup(const Explanation &explanation, const PageSource &source)
{
    const auto known = index(explanation.headword);
    if (!known)
        return {};
    const Timestamp now = m_clock.now();
    WordEntry word = m_entries[*known];
    const bool wasDormant = word.displayStage(m_config.config(), now) == DisplayStage::dormant;
    const double ageDays = daysBetween(word.lastContact(), now);

    word.lookupCount = saturatingAdd(word.lookupCount, 1);
    word.lastLookupAt = now;
    Encounters::mark(word, source, now);
    Unlock unlock = recordEncounter(word, explanation, source, false);
    put(*known, word);
    if (wasDormant) {
        unlock.awakenedAfterDays = static_cast<qint64>(ageDays);
        m_log.add(LogKind::awaken, word.headword, QString::number(*unlock.awakenedAfterDays));
    }
    writeEntries();
    m_log.add(LogKind::lookup, word.headword, source.sourceKey());
    return unlock;
}

Unlock WordStore::recordEncounter(
    WordEntry &word, const Explanation &explanation, const PageSource &source, bool isNewWord)
{
    Unlock unlock;
    // A headword that came with blanks round it is stored so, and no look-up by text finds it again.
    if (headwordKey(explanation.headword) != word.headword.toLower())
        return unlock;
    Encounters::recordForm(word, explanation, m_clock.now(), unlock);
    recordGrammar(explanation, source, unlock);

    const QString root = trimmedBlanks(explanation.familyRoot.value_or(QString()));
    if (!root.isEmpty())
        word.familyRoot = root;
    if (isNewWord) {
        for (const WordEntry &relative : family(word))
            unlock.familyMembers.append(relative.headword);
    }

    const QList<Affix> list = explanation.affixList();
    if (!list.isEmpty()) {
        word.affixes = list;
        recordAffixes(explanation, unlock);
    }
    return unlock;
}

void WordStore::recordGrammar(const Explanation &explanation, const PageSource &source, Unlock &unlock)
{
    auto met = Encounters::newGrammar(m_grammarEncounters, explanation, source, m_clock.now());
    if (!met)
        return;
    met->id = m_makeId();
    const bool isUnlocked = unlockedGrammar().contains(met->point);
    emit changing();
    m_grammarEncounters.prepend(*met);
    writeRecordFile(m_paths.grammar, m_grammarEncounters, m_damaged);
    if (isUnlocked)
        return;
    unlock.newGrammar = met->point;
    unlock.grammarProgress = Progress{.met = unlockedGrammar().size(), .all = caseCount<GrammarPoint>};
}

void WordStore::recordAffixes(const Explanation &explanation, Unlock &unlock)
{
    const auto encounters = Encounters::newAffixes(m_affixEncounters, explanation, m_clock.now());
    for (AffixEncounter met : encounters) {
        met.id = m_makeId();
        if (!unlockedAffixes().contains(met.affix))
            unlock.newAffixes.append(met.affix);
        emit changing();
        m_affixEncounters.prepend(met);
    }
    if (!encounters.isEmpty())
        writeRecordFile(m_paths.affixes, m_affixEncounters, m_damaged);
    if (!unlock.newAffixes.isEmpty())
        unlock.affixProgress = Progress{.met = unlockedAffixes().size(), .all = caseCount<Affix>};
}

void WordStore::addNote(const AINote &note, const QString &headword)
{
    const auto known = index(headword);
    if (!known)
        return;
    WordEntry word = m_entries[*known];
    word.notes = word.notes.value_or(QList<AINote>()) << note;
    put(*known, word);
    writeEntries();
}

void WordStore::addSentenceNote(const AINote &note)
{
    emit changing();
    m_sentenceNotes.prepend(note);
    writeRecordFile(m_paths.notes, m_sentenceNotes, m_damaged);
}

QList<WordEntry> WordStore::family(const WordEntry &entry) const
{
    return WordQueries::family(m_entries, entry);
}

QStringList WordStore::topInterests() const
{
    return WordQueries::topInterests(m_entries);
}

QSet<GrammarPoint> WordStore::unlockedGrammar() const
{
    return WordQueries::unlockedGrammar(m_grammarEncounters);
}

QSet<Affix> WordStore::unlockedAffixes() const
{
    return WordQueries::unlockedAffixes(m_affixEncounters);
}

} // namespace nimbrelle
