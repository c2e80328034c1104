#include "frame/ConfigStore.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"

namespace nimbrelle {

SyncBundle WordStore::snapshot() const
{
    SyncBundle bundle;
    bundle.words = m_entries;
    bundle.notes = m_sentenceNotes;
    bundle.grammar = m_grammarEncounters;
    bundle.affixes = m_affixEncounters;
    bundle.deleted = m_deleted;
    bundle.log = m_log.readLines();
    bundle.stats = m_stats;
    bundle.settings = m_config.config().studySettings();
    return bundle;
}

void WordStore::applySync(const SyncBundle &bundle)
{
    takeOver(m_entries, bundle.words);
    takeOver(m_sentenceNotes, bundle.notes);
    takeOver(m_grammarEncounters, bundle.grammar);
    takeOver(m_affixEncounters, bundle.affixes);
    m_deleted = bundle.deleted;
    // The counters of another day are left out, so that today's start clean.
    if (bundle.stats && bundle.stats->day == freshStats().day)
        takeOver(m_stats, *bundle.stats);

    writeEntries();
    writeSentenceNotes();
    writeGrammar();
    writeAffixes();
    writeDeleted();
    writeStats();
    m_log.replaceAll(bundle.log);
    if (bundle.settings && bundle.settings != m_config.config().studySettings())
        m_config.applySync(*bundle.settings);
}

template <class Field> void WordStore::takeOver(Field &field, const Field &value)
{
    emit changing();
    field = value;
}

} // namespace nimbrelle
