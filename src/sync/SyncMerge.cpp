#include "sync/SyncMerge.h"

#include "frame/Json.h"
#include "sync/MergeWords.h"

#include <vector>

namespace nimbrelle::SyncMerge {

namespace {

QList<Tombstone> mergeTombstones(const QList<Tombstone> &a, const QList<Tombstone> &b)
{
    QHash<QString, Timestamp> latest;
    for (const Tombstone &tombstone : a + b) {
        const auto held = latest.find(tombstone.id);
        if (held == latest.end())
            latest.insert(tombstone.id, tombstone.at);
        else
            *held = std::max(*held, tombstone.at);
    }
    QList<Tombstone> result;
    result.reserve(latest.size());
    for (auto it = latest.cbegin(); it != latest.cend(); ++it)
        result.append({it.key(), it.value()});
    std::stable_sort(result.begin(), result.end(), [](const Tombstone &one, const Tombstone &other) {
        return one.at != other.at ? one.at < other.at : one.id < other.id;
    });
    return result;
}

// Ids are compared by their canonical text, so a tombstone in any other spelling buries nothing.
Dead deadOf(const QList<Tombstone> &tombstones)
{
    Dead dead;
    dead.reserve(tombstones.size());
    for (const Tombstone &tombstone : tombstones) {
        const QUuid id = QUuid::fromString(tombstone.id);
        if (idText(id) == tombstone.id)
            dead.insert(id);
    }
    return dead;
}

QList<AINote> mergeNotes(const QList<AINote> &a, const QList<AINote> &b, const Dead &dead)
{
    auto notes = unionById(a, b, dead);
    sortNewestFirst(notes, &AINote::addedAt);
    return notes;
}

QList<GrammarEncounter> mergeGrammar(
    const QList<GrammarEncounter> &a, const QList<GrammarEncounter> &b, const Dead &dead)
{
    auto encounters = dedupe(unionById(a, b, dead), [](const GrammarEncounter &encounter) {
        return QString::number(static_cast<int>(encounter.point)) + u'\n' + encounter.sentence;
    });
    sortNewestFirst(encounters, &GrammarEncounter::addedAt);
    return encounters;
}

QList<AffixEncounter> mergeAffixes(
    const QList<AffixEncounter> &a, const QList<AffixEncounter> &b, const Dead &dead)
{
    auto encounters = dedupe(unionById(a, b, dead), [](const AffixEncounter &encounter) {
        return QString::number(static_cast<int>(encounter.affix)) + u'\n' + encounter.headword.toLower();
    });
    sortNewestFirst(encounters, &AffixEncounter::addedAt);
    return encounters;
}

// Empty for a line that is no JSON object with such a text, so that it sorts to the front.
QString timeOf(const QString &line)
{
    const auto document = JsonDocument::parse(line.toUtf8());
    if (!document || !document->root().isObject())
        return {};
    const JsonValue event = document->root();
    for (qsizetype i = event.count() - 1; i >= 0; --i) {
        if (event.memberKey(i) != "time")
            continue;
        const auto time = event.memberValue(i).string();
        return time ? QString::fromUtf8(time->data(), static_cast<qsizetype>(time->size())) : QString();
    }
    return {};
}

// Lines are carried as they stand, broken ones too, and their times compared as text.
QStringList mergeLog(const QStringList &a, const QStringList &b)
{
    struct Dated {
        QString time, line;
    };
    std::vector<Dated> lines;
    lines.reserve(static_cast<std::size_t>(std::max(a.size(), b.size())));
    QSet<QString> seen;
    for (const QStringList *log : {&a, &b}) {
        for (const QString &line : *log) {
            if (!seen.contains(line)) {
                seen.insert(line);
                lines.push_back({timeOf(line), line});
            }
        }
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Dated &one, const Dated &other) {
        return one.time != other.time ? one.time < other.time : one.line < other.line;
    });
    QStringList result;
    result.reserve(static_cast<qsizetype>(lines.size()));
    for (const Dated &dated : lines)
        result.append(dated.line);
    return result;
}

// The larger and not the sum: each side's count of one day overlaps the other's.
std::optional<ReviewStats> mergeStats(
    const std::optional<ReviewStats> &a, const std::optional<ReviewStats> &b)
{
    if (!a || !b)
        return a ? a : b;
    if (a->day != b->day)
        return a->day > b->day ? a : b;
    return ReviewStats{a->day, std::max(a->reviewed, b->reviewed), std::max(a->newLearned, b->newLearned)};
}

std::optional<StudySettings> mergeSettings(
    const std::optional<StudySettings> &a, const std::optional<StudySettings> &b)
{
    if (!a || !b)
        return a ? a : b;
    if (a->changedAt != b->changedAt)
        return a->changedAt > b->changedAt ? a : b;
    return b->order() > a->order() ? b : a;
}

} // namespace

SyncBundle merge(const SyncBundle &a, const SyncBundle &b)
{
    SyncBundle merged;
    merged.deleted = mergeTombstones(a.deleted, b.deleted);
    const Dead dead = deadOf(merged.deleted);
    merged.words = mergeWords(a.words, b.words, dead);
    merged.notes = mergeNotes(a.notes, b.notes, dead);
    merged.grammar = mergeGrammar(a.grammar, b.grammar, dead);
    merged.affixes = mergeAffixes(a.affixes, b.affixes, dead);
    merged.log = mergeLog(a.log, b.log);
    merged.stats = mergeStats(a.stats, b.stats);
    merged.settings = mergeSettings(a.settings, b.settings);
    return merged;
}

} // namespace nimbrelle::SyncMerge
