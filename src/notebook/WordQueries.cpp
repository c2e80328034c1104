#include "notebook/WordQueries.h"

#include <QHash>

#include <algorithm>

namespace nimbrelle::WordQueries {

namespace {

template <class Condition>
std::optional<qsizetype> firstWhere(const QList<WordEntry> &entries, Condition condition)
{
    const auto found = std::ranges::find_if(entries, condition);
    return found == entries.cend() ? std::nullopt : std::optional(found - entries.cbegin());
}

QString rootOf(const WordEntry &entry)
{
    return entry.familyRoot.value_or(entry.headword).toLower();
}

/// The most frequent first; equals in the order of first meeting, which keeps the result the same from run to
/// run.
QStringList sourcesByFrequency(const QList<WordEntry> &entries)
{
    QHash<QString, qsizetype> counts;
    QStringList keys;
    for (const WordEntry &entry : entries) {
        for (const QString &key : entry.sourceKeys.value_or(QStringList())) {
            if (counts[key]++ == 0)
                keys.append(key);
        }
    }
    std::stable_sort(keys.begin(), keys.end(),
        [&counts](const QString &a, const QString &b) { return counts.value(a) > counts.value(b); });
    return keys;
}

QStringList pageTitles(const QList<WordEntry> &entries)
{
    QStringList titles;
    for (const WordEntry &entry : entries) {
        for (const Example &example : entry.examples) {
            if (example.sourceTitle)
                titles.append(*example.sourceTitle);
        }
    }
    return titles;
}

} // namespace

std::optional<qsizetype> index(const QList<WordEntry> &entries, const QString &text)
{
    const QString wanted = headwordKey(text);
    return firstWhere(
        entries, [&wanted](const WordEntry &entry) { return entry.headword.toLower() == wanted; });
}

std::optional<qsizetype> index(const QList<WordEntry> &entries, const QUuid &id)
{
    return firstWhere(entries, [&id](const WordEntry &entry) { return entry.id == id; });
}

qint64 learningCount(const QList<WordEntry> &entries)
{
    return std::ranges::count(entries, std::optional(Stage::learning), &WordEntry::stage);
}

qint64 spellPracticeCount(const QList<WordEntry> &entries)
{
    return std::ranges::count_if(entries, &WordEntry::isSpellPractice);
}

QStringList masteredWords(const QList<WordEntry> &entries, qsizetype most)
{
    QStringList headwords;
    for (const WordEntry &entry : entries) {
        if (entry.stage == Stage::mastered && headwords.size() < most)
            headwords.append(entry.headword);
    }
    return headwords;
}

QList<WordEntry> family(const QList<WordEntry> &entries, const WordEntry &entry)
{
    const QString root = rootOf(entry);
    QList<WordEntry> relatives;
    for (const WordEntry &other : entries) {
        if (other.id != entry.id && (rootOf(other) == root || other.headword.toLower() == root))
            relatives.append(other);
    }
    return relatives;
}

QStringList topInterests(const QList<WordEntry> &entries)
{
    const QStringList titles = pageTitles(entries);
    return sourcesByFrequency(entries).mid(0, 5) + titles.mid(std::max<qsizetype>(0, titles.size() - 8));
}

QSet<GrammarPoint> unlockedGrammar(const QList<GrammarEncounter> &encounters)
{
    QSet<GrammarPoint> points;
    for (const GrammarEncounter &encounter : encounters)
        points.insert(encounter.point);
    return points;
}

QSet<Affix> unlockedAffixes(const QList<AffixEncounter> &encounters)
{
    QSet<Affix> affixes;
    for (const AffixEncounter &encounter : encounters)
        affixes.insert(encounter.affix);
    return affixes;
}

} // namespace nimbrelle::WordQueries
