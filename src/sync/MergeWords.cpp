#include "sync/MergeWords.h"

#include <utility>

namespace nimbrelle::SyncMerge {

namespace {

std::optional<Timestamp> maxDate(const std::optional<Timestamp> &a, const std::optional<Timestamp> &b)
{
    if (!a || !b)
        return a ? a : b;
    return std::max(*a, *b);
}

// Never mixed field by field: stability, difficulty and due only make sense together.
std::optional<ReviewState> later(const std::optional<ReviewState> &a, const std::optional<ReviewState> &b)
{
    if (!a || !b)
        return a ? a : b;
    if (a->lastReview != b->lastReview)
        return a->lastReview > b->lastReview ? a : b;
    return b->reps > a->reps ? b : a;
}

int rankOf(const std::optional<Stage> &stage)
{
    switch (stage.value_or(Stage::seen)) {
    case Stage::seen:
        return 0;
    case Stage::resting:
        return 1;
    case Stage::learning:
        return 2;
    case Stage::mastered:
        return 3;
    }
    return 0;
}

bool hasNewerLearningState(const WordEntry &newer, const WordEntry &older)
{
    const Timestamp a = newer.stateAt.value_or(distantPast), b = older.stateAt.value_or(distantPast);
    return a != b ? a > b : rankOf(newer.stage) > rankOf(older.stage);
}

// The five fields describe one decision and move as a group.
void takeLearningState(WordEntry &word, const WordEntry &from)
{
    word.stage = from.stage;
    word.restUntil = from.restUntil;
    word.wantToLearn = from.wantToLearn;
    word.spellPractice = from.spellPractice;
    word.stateAt = from.stateAt;
}

bool hasNewerSpelling(const WordEntry &newer, const WordEntry &older)
{
    const Timestamp a = newer.lastSpelledAt.value_or(distantPast),
                    b = older.lastSpelledAt.value_or(distantPast);
    return a != b ? a > b : newer.spellLevel.value_or(-1) > older.spellLevel.value_or(-1);
}

void takeSpelling(WordEntry &word, const WordEntry &from)
{
    word.spellLevel = from.spellLevel;
    word.lastSpelledAt = from.lastSpelledAt;
}

QList<Example> mergeExamples(const QList<Example> &older, const QList<Example> &newer, const Dead &dead)
{
    auto examples =
        dedupe(unionById(older, newer, dead), [](const Example &example) { return example.sentence; });
    sortOldestFirst(examples);
    return examples;
}

std::optional<QList<AINote>> mergeNotes(
    const std::optional<QList<AINote>> &older, const std::optional<QList<AINote>> &newer, const Dead &dead)
{
    if (!older && !newer)
        return std::nullopt;
    auto notes = unionById(older.value_or(QList<AINote>()), newer.value_or(QList<AINote>()), dead);
    sortOldestFirst(notes);
    return notes;
}

using Inflections = QMap<QString, QString>;

std::optional<Inflections> mergeInflections(
    const std::optional<Inflections> &older, const std::optional<Inflections> &newer)
{
    if (!older || !newer)
        return older ? older : newer;
    Inflections inflections = *newer;
    inflections.insert(*older);
    return inflections;
}

void addForm(QList<FormRecord> &forms, const FormRecord &record)
{
    const auto held = std::find_if(
        forms.begin(), forms.end(), [&record](const FormRecord &form) { return form.kind == record.kind; });
    if (held == forms.end()) {
        forms.append(record);
        return;
    }
    const qint64 count = std::max(held->count, record.count);
    if (record.firstSeenAt < held->firstSeenAt)
        *held = record;
    held->count = count;
}

std::optional<QList<FormRecord>> mergeForms(
    const std::optional<QList<FormRecord>> &older, const std::optional<QList<FormRecord>> &newer)
{
    if (!older && !newer)
        return std::nullopt;
    QList<FormRecord> forms;
    for (const auto *side : {&older, &newer}) {
        for (const FormRecord &record : side->value_or(QList<FormRecord>()))
            addForm(forms, record);
    }
    return forms;
}

std::optional<QList<Affix>> mergeAffixes(
    const std::optional<QList<Affix>> &older, const std::optional<QList<Affix>> &newer)
{
    if (older && !older->isEmpty())
        return older;
    if (newer && !newer->isEmpty())
        return newer;
    return older ? older : newer;
}

std::optional<QStringList> mergeDays(
    const std::optional<QStringList> &older, const std::optional<QStringList> &newer)
{
    if (!older && !newer)
        return std::nullopt;
    QStringList days = older.value_or(QStringList()) + newer.value_or(QStringList());
    days.sort();
    days.erase(std::unique(days.begin(), days.end()), days.end());
    return days;
}

std::optional<QStringList> mergeSources(
    const std::optional<QStringList> &older, const std::optional<QStringList> &newer)
{
    if (!older && !newer)
        return std::nullopt;
    QStringList sources = older.value_or(QStringList());
    for (const QString &source : newer.value_or(QStringList())) {
        if (!sources.contains(source))
            sources.append(source);
    }
    return sources;
}

bool isOlder(const WordEntry &a, const WordEntry &b)
{
    return a.createdAt != b.createdAt ? a.createdAt < b.createdAt : comesBefore(a.id, b.id);
}

void fillEmptyTexts(WordEntry &word, const WordEntry &newer)
{
    for (const auto text : {&WordEntry::phonetic, &WordEntry::pos, &WordEntry::meaningZh,
             &WordEntry::definitionEn, &WordEntry::registerNoteZh}) {
        if ((word.*text).isEmpty())
            word.*text = newer.*text;
    }
    for (const auto text : {&WordEntry::familyRoot, &WordEntry::mnemonic}) {
        if (!(word.*text))
            word.*text = newer.*text;
    }
}

WordEntry mergeOrdered(const WordEntry &older, const WordEntry &newer, const Dead &dead)
{
    WordEntry word = older;
    fillEmptyTexts(word, newer);
    word.lookupCount = std::max(older.lookupCount, newer.lookupCount);
    word.lastLookupAt = maxDate(older.lastLookupAt, newer.lastLookupAt);
    word.examples = mergeExamples(older.examples, newer.examples, dead);
    word.notes = mergeNotes(older.notes, newer.notes, dead);
    word.inflections = mergeInflections(older.inflections, newer.inflections);
    word.forms = mergeForms(older.forms, newer.forms);
    word.affixes = mergeAffixes(older.affixes, newer.affixes);
    word.encounterDays = mergeDays(older.encounterDays, newer.encounterDays);
    word.sourceKeys = mergeSources(older.sourceKeys, newer.sourceKeys);
    word.review = later(older.review, newer.review);
    if (hasNewerLearningState(newer, older))
        takeLearningState(word, newer);
    if (hasNewerSpelling(newer, older))
        takeSpelling(word, newer);
    return word;
}

QList<WordEntry> mergeByIdentity(const QList<WordEntry> &a, const QList<WordEntry> &b, const Dead &dead)
{
    QList<WordEntry> held;
    held.reserve(std::max(a.size(), b.size()));
    QHash<QUuid, qsizetype> places;
    for (const QList<WordEntry> *list : {&a, &b}) {
        for (const WordEntry &entry : *list) {
            if (dead.contains(entry.id))
                continue;
            const auto place = places.constFind(entry.id);
            if (place != places.cend()) {
                held[*place] = mergeEntry(held[*place], entry, dead);
                continue;
            }
            places.insert(entry.id, held.size());
            // With itself, which drops its dead and repeated sentences and notes.
            held.append(mergeEntry(entry, entry, dead));
        }
    }
    return held;
}

QList<WordEntry> mergeBySpelling(const QList<WordEntry> &entries, const Dead &dead)
{
    QList<WordEntry> held;
    held.reserve(entries.size());
    QHash<QString, qsizetype> places;
    for (const WordEntry &entry : entries) {
        const QString key = headwordKey(entry.headword);
        const auto place = places.constFind(key);
        if (place != places.cend()) {
            held[*place] = mergeEntry(held[*place], entry, dead);
            continue;
        }
        places.insert(key, held.size());
        held.append(entry);
    }
    return held;
}

} // namespace

WordEntry mergeEntry(const WordEntry &x, const WordEntry &y, const Dead &dead)
{
    return isOlder(y, x) ? mergeOrdered(y, x, dead) : mergeOrdered(x, y, dead);
}

QList<WordEntry> mergeWords(const QList<WordEntry> &a, const QList<WordEntry> &b, const Dead &dead)
{
    QList<WordEntry> byIdentity = mergeByIdentity(a, b, dead);
    std::stable_sort(byIdentity.begin(), byIdentity.end(),
        [](const WordEntry &one, const WordEntry &other) { return comesBefore(one.id, other.id); });
    QList<WordEntry> words = mergeBySpelling(byIdentity, dead);
    sortNewestFirst(words, &WordEntry::createdAt);
    return words;
}

} // namespace nimbrelle::SyncMerge
