#include "sync/SyncKnown.h"

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cstring>

namespace nimbrelle {

namespace {

using ShortId = quint64;
using Pair = std::array<quint64, 2>;

/// Half of an id is enough to find it among those of one notebook.
ShortId shortened(const QUuid &id)
{
    ShortId end = 0;
    std::memcpy(&end, id.data4, sizeof end);
    return end ^ (ShortId{id.data1} << 32 | ShortId{id.data2} << 16 | id.data3);
}

template <class Number> QString packed(const QList<Number> &numbers)
{
    const auto size = numbers.size() * static_cast<qsizetype>(sizeof(Number));
    const auto *bytes = reinterpret_cast<const char *>(numbers.constData());
    return QString::fromLatin1(QByteArray::fromRawData(bytes, size).toBase64());
}

template <class Number> QList<Number> unpacked(const QString &text)
{
    const QByteArray bytes = QByteArray::fromBase64(text.toLatin1());
    QList<Number> numbers(bytes.size() / static_cast<qsizetype>(sizeof(Number)));
    const qsizetype size = numbers.size() * static_cast<qsizetype>(sizeof(Number));
    std::copy_n(bytes.cbegin(), size, reinterpret_cast<char *>(numbers.data()));
    return numbers;
}

quint64 secondOf(Timestamp time)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
    return static_cast<quint64>(std::max<qint64>(0, seconds));
}

quint64 lastChangeOf(const WordEntry &word)
{
    const Timestamp reviewed = word.review ? word.review->lastReview : word.createdAt;
    return secondOf(std::max({word.lastContact(), word.createdAt, reviewed,
        word.stateAt.value_or(word.createdAt), word.lastSpelledAt.value_or(word.createdAt)}));
}

QList<Pair> recordsOf(const SyncBundle &document)
{
    QList<Pair> records;
    for (const WordEntry &word : document.words)
        records.append({shortened(word.id), lastChangeOf(word)});
    const auto add = [&records](const auto &list) {
        for (const auto &record : list)
            records.append({shortened(record.id), 0});
    };
    add(document.notes);
    add(document.grammar);
    add(document.affixes);
    return records;
}

QList<Pair> partsOf(const SyncBundle &document)
{
    QList<Pair> parts;
    for (const WordEntry &word : document.words) {
        const ShortId owner = shortened(word.id);
        for (const Example &example : word.examples)
            parts.append({shortened(example.id), owner});
        if (!word.notes)
            continue;
        for (const AINote &note : *word.notes)
            parts.append({shortened(note.id), owner});
    }
    return parts;
}

// As in a merge, a tombstone in any other spelling buries nothing.
QList<ShortId> buriedIn(const SyncBundle &document)
{
    QList<ShortId> buried;
    for (const Tombstone &tombstone : document.deleted) {
        const QUuid id = QUuid::fromString(tombstone.id);
        if (idText(id) == tombstone.id)
            buried.append(shortened(id));
    }
    return buried;
}

QString hashOfFirst(qint64 count, const QStringList &lines)
{
    QCryptographicHash hash(QCryptographicHash::Blake2b_256);
    for (qsizetype i = 0; i < count; ++i) {
        hash.addData(lines[i].toUtf8());
        hash.addData("\n");
    }
    return QString::fromLatin1(hash.result().toHex());
}

/// What a document has now, to be asked about what was known.
class Present {
public:
    explicit Present(const SyncBundle &document)
    {
        for (const auto &[part, owner] : partsOf(document))
            m_stored.insert(part, 0);
        for (const auto &[id, lastChange] : recordsOf(document))
            m_stored.insert(id, lastChange);
        for (const ShortId id : buriedIn(document))
            m_buried.insert(id);
    }

    bool isBuried(ShortId id) const { return m_buried.contains(id); }
    bool has(ShortId id) const { return m_stored.contains(id) || isBuried(id); }
    bool hasAsOf(ShortId id, quint64 lastChange) const
    {
        const auto stored = m_stored.constFind(id);
        return isBuried(id) || (stored != m_stored.cend() && *stored >= lastChange);
    }

private:
    QHash<ShortId, quint64> m_stored;
    QSet<ShortId> m_buried;
};

bool hasCounters(const std::optional<ReviewStats> &stats, const std::optional<ReviewStats> &known)
{
    const bool isOfThatDay = stats && known && stats->day == known->day;
    return !isOfThatDay || (stats->reviewed >= known->reviewed && stats->newLearned >= known->newLearned);
}

} // namespace

SyncKnown SyncKnown::of(const SyncBundle &document, const QString &hash)
{
    return {.hash = hash,
        .records = packed(recordsOf(document)),
        .parts = packed(partsOf(document)),
        .buried = packed(buriedIn(document)),
        .logCount = document.log.size(),
        .logHash = hashOfFirst(document.log.size(), document.log),
        .stats = document.stats,
        .hasSettings = document.settings.has_value()};
}

bool SyncKnown::isHeldBy(const SyncBundle &document, Timestamp now) const
{
    const Present present(document);
    const quint64 today = secondOf(now);
    const auto hasRecord = [&](const Pair &known) {
        return present.hasAsOf(known[0], known[1] <= today ? known[1] : 0);
    };
    const auto hasPart = [&](const Pair &known) {
        return present.has(known[0]) || present.isBuried(known[1]);
    };
    const auto isStillBuried = [&](ShortId id) { return present.isBuried(id); };
    const bool hasLog =
        logCount >= 0 && logCount <= document.log.size() && hashOfFirst(logCount, document.log) == logHash;
    return hasLog && hasCounters(document.stats, stats) && (document.settings || !hasSettings)
        && std::ranges::all_of(unpacked<Pair>(records), hasRecord)
        && std::ranges::all_of(unpacked<Pair>(parts), hasPart)
        && std::ranges::all_of(unpacked<ShortId>(buried), isStillBuried);
}

} // namespace nimbrelle
