#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/DayKey.h"
#include "frame/RecordCodec.h"
#include "frame/Saturate.h"
#include "frame/Text.h"
#include "notebook/Explanation.h"
#include "notebook/LearningLog.h"
#include "notebook/PageSource.h"
#include "notebook/WordStore.h"

#include <QHash>

#include <algorithm>

// How saving and looking up a word are folded into the notebook.
namespace nimbrelle {

namespace {

bool isBlankOrAbsent(const std::optional<QString> &text)
{
    return !text || text->isEmpty();
}

QString surfaceOf(const Explanation &explanation)
{
    return isBlankOrAbsent(explanation.surfaceForm) ? explanation.headword : *explanation.surfaceForm;
}

Example exampleOf(const QUuid &id, const Explanation &explanation, const PageSource &source, Timestamp now)
{
    return {id, explanation.sentence.value_or(QString()), explanation.sentenceZh.value_or(QString()),
        explanation.meaningZh, explanation.sentenceIsExample == true, source.app, source.url, source.title,
        now};
}

WordEntry entryOf(const QUuid &id, const Explanation &explanation, const Example &example)
{
    WordEntry entry;
    entry.id = id;
    entry.headword = explanation.headword;
    entry.phonetic = explanation.phonetic.value_or(QString());
    entry.pos = explanation.pos.value_or(QString());
    entry.meaningZh = explanation.meaningZh;
    entry.definitionEn = explanation.definitionEn.value_or(QString());
    entry.register_ = registerFrom(explanation.register_);
    entry.registerNoteZh = explanation.registerNoteZh.value_or(QString());
    if (!example.sentence.isEmpty())
        entry.examples.append(example);
    entry.createdAt = example.addedAt;
    entry.lastLookupAt = example.addedAt;
    return entry;
}

bool hasSentence(const WordEntry &word, const QString &sentence)
{
    return std::any_of(word.examples.cbegin(), word.examples.cend(),
        [&sentence](const Example &example) { return example.sentence == sentence; });
}

QString rootOf(const WordEntry &entry)
{
    return entry.familyRoot.value_or(entry.headword).toLower();
}

} // namespace

SavedWord WordStore::save(const Explanation &explanation, const PageSource &source)
{
    const Example example = exampleOf(m_makeId(), explanation, source, m_clock.now());
    if (const auto known = index(explanation.headword)) {
        WordEntry word = m_entries[*known];
        if (!example.sentence.isEmpty() && !hasSentence(word, example.sentence)) {
            word.examples.append(example);
            put(*known, word);
        }
        writeEntries();
        return {word, {}};
    }

    WordEntry word = entryOf(m_makeId(), explanation, example);
    markEncounter(word, source);
    Unlock unlock = recordEncounter(word, explanation, source, true);
    emit changing();
    m_entries.prepend(word);
    writeEntries();
    m_log.add(QStringLiteral("save"), explanation.headword, source.sourceKey());
    return {word, std::move(unlock)};
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
    markEncounter(word, source);
    Unlock unlock = recordEncounter(word, explanation, source, false);
    put(*known, word);
    if (wasDormant) {
        unlock.awakenedAfterDays = static_cast<qint64>(ageDays);
        m_log.add(QStringLiteral("awaken"), word.headword, QString::number(*unlock.awakenedAfterDays));
    }
    writeEntries();
    m_log.add(QStringLiteral("lookup"), word.headword, source.sourceKey());
    return unlock;
}

void WordStore::markEncounter(WordEntry &word, const PageSource &source) const
{
    QStringList days = word.days();
    const QString today = DayKey::string(m_clock.now());
    if (!days.contains(today))
        days.append(today);
    word.encounterDays = days;

    const auto key = source.sourceKey();
    if (!key)
        return;
    QStringList keys = word.sourceKeys.value_or(QStringList());
    if (!keys.contains(*key))
        keys.append(*key);
    word.sourceKeys = keys;
}

Unlock WordStore::recordEncounter(
    WordEntry &word, const Explanation &explanation, const PageSource &source, bool isNewWord)
{
    Unlock unlock;
    // A headword that came with blanks round it is stored so, and no look-up by text finds it again.
    if (trimmedBlanks(explanation.headword).toLower() != word.headword.toLower())
        return unlock;
    recordForm(word, explanation, unlock);
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

void WordStore::recordForm(WordEntry &word, const Explanation &explanation, Unlock &unlock) const
{
    auto inflections = word.inflections.value_or(QMap<QString, QString>());
    for (const auto &[kind, form] : explanation.allForms()) {
        if (!inflections.contains(caseText(kind)))
            inflections.insert(caseText(kind), form);
    }
    if (!inflections.isEmpty())
        word.inflections = inflections;

    const FormKind kind = looseFormKind(explanation.formKind).value_or(FormKind::base);
    auto forms = word.forms.value_or(QList<FormRecord>());
    const auto met = std::find_if(
        forms.begin(), forms.end(), [kind](const FormRecord &record) { return record.kind == kind; });
    if (met != forms.end()) {
        met->count = saturatingAdd(met->count, 1);
    } else {
        const QString form = inflections.value(caseText(kind), surfaceOf(explanation));
        unlock.newForm = FormRecord{kind, form, m_clock.now(), 1, explanation.sentence};
        forms.append(*unlock.newForm);
    }
    word.forms = forms;

    const qsizetype slotCount = word.formSlots().size();
    if (slotCount >= 2)
        unlock.formProgress = Progress{forms.size(), slotCount};
}

// Grammar is collected from what the user really read, never from a sentence that the AI made up.
void WordStore::recordGrammar(const Explanation &explanation, const PageSource &source, Unlock &unlock)
{
    const auto point = looseGrammarPoint(explanation.grammar);
    if (!point || isBlankOrAbsent(explanation.sentence) || explanation.sentenceIsExample == true)
        return;
    const QString sentence = *explanation.sentence;
    const bool isKnown = std::any_of(m_grammarEncounters.cbegin(), m_grammarEncounters.cend(),
        [&](const GrammarEncounter &met) { return met.point == *point && met.sentence == sentence; });
    if (isKnown)
        return;

    const bool isUnlocked = unlockedGrammar().contains(*point);
    emit changing();
    m_grammarEncounters.prepend(
        {m_makeId(), *point, explanation.headword, surfaceOf(explanation), sentence, explanation.sentenceZh,
            explanation.grammarNoteZh, source.app, source.url, source.title, m_clock.now()});
    writeGrammar();
    if (isUnlocked)
        return;
    unlock.newGrammar = point;
    unlock.grammarProgress = Progress{unlockedGrammar().size(), caseCount<GrammarPoint>};
}

// An affix is a property of the word, so it counts even where the sentence is made up.
void WordStore::recordAffixes(const Explanation &explanation, Unlock &unlock)
{
    const QString headword = explanation.headword.toLower();
    const qsizetype before = m_affixEncounters.size();
    for (const Affix affix : explanation.affixList()) {
        const bool isKnown =
            std::any_of(m_affixEncounters.cbegin(), m_affixEncounters.cend(), [&](const AffixEncounter &met) {
                return met.affix == affix && met.headword.toLower() == headword;
            });
        if (isKnown)
            continue;
        if (!unlockedAffixes().contains(affix))
            unlock.newAffixes.append(affix);
        emit changing();
        m_affixEncounters.prepend({m_makeId(), affix, explanation.headword, explanation.familyRoot,
            explanation.sentence, m_clock.now()});
    }
    if (m_affixEncounters.size() != before)
        writeAffixes();
    if (!unlock.newAffixes.isEmpty())
        unlock.affixProgress = Progress{unlockedAffixes().size(), caseCount<Affix>};
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
    writeSentenceNotes();
}

QList<WordEntry> WordStore::family(const WordEntry &entry) const
{
    const QString root = rootOf(entry);
    QList<WordEntry> relatives;
    for (const WordEntry &other : m_entries) {
        if (other.id != entry.id && (rootOf(other) == root || other.headword.toLower() == root))
            relatives.append(other);
    }
    return relatives;
}

QStringList WordStore::topInterests() const
{
    QHash<QString, qsizetype> counts;
    QStringList keys; // in order of first meeting, which keeps the result the same from run to run
    QStringList titles;
    for (const WordEntry &entry : m_entries) {
        for (const QString &key : entry.sourceKeys.value_or(QStringList())) {
            if (counts[key]++ == 0)
                keys.append(key);
        }
        for (const Example &example : entry.examples) {
            if (example.sourceTitle)
                titles.append(*example.sourceTitle);
        }
    }
    std::stable_sort(keys.begin(), keys.end(),
        [&counts](const QString &a, const QString &b) { return counts.value(a) > counts.value(b); });
    return keys.mid(0, 5) + titles.mid(std::max<qsizetype>(0, titles.size() - 8));
}

QSet<GrammarPoint> WordStore::unlockedGrammar() const
{
    QSet<GrammarPoint> points;
    for (const GrammarEncounter &met : m_grammarEncounters)
        points.insert(met.point);
    return points;
}

QSet<Affix> WordStore::unlockedAffixes() const
{
    QSet<Affix> affixes;
    for (const AffixEncounter &met : m_affixEncounters)
        affixes.insert(met.affix);
    return affixes;
}

} // namespace nimbrelle
