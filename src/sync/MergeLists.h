#pragma once

#include "frame/Timestamp.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QUuid>

#include <algorithm>
#include <cstring>

/// The list rules that every merge of records shares.
namespace nimbrelle::SyncMerge {

/// The ids that have a tombstone.
using Dead = QSet<QUuid>;

/// The order of the ids' canonical texts, without making the texts.
inline bool comesBefore(const QUuid &a, const QUuid &b)
{
    if (a.data1 != b.data1)
        return a.data1 < b.data1;
    if (a.data2 != b.data2)
        return a.data2 < b.data2;
    if (a.data3 != b.data3)
        return a.data3 < b.data3;
    return std::memcmp(a.data4, b.data4, sizeof a.data4) < 0;
}

/// The first element of each living id, in order of first appearance in `a` and then `b`.
template <class Record>
QList<Record> unionById(const QList<Record> &a, const QList<Record> &b, const Dead &dead)
{
    QList<Record> result;
    result.reserve(std::max(a.size(), b.size()));
    QSet<QUuid> seen;
    for (const QList<Record> *list : {&a, &b}) {
        for (const Record &record : *list) {
            if (dead.contains(record.id) || seen.contains(record.id))
                continue;
            seen.insert(record.id);
            result.append(record);
        }
    }
    return result;
}

/// The earliest record of each key, at equal times that of the smaller id, in order of the keys' first
/// appearance. `keyOf` gives text.
template <class Record, class KeyOf> QList<Record> dedupe(const QList<Record> &records, KeyOf keyOf)
{
    QList<Record> result;
    result.reserve(records.size());
    QHash<QString, qsizetype> places;
    for (const Record &record : records) {
        const QString key = keyOf(record);
        const auto place = places.constFind(key);
        if (place == places.cend()) {
            places.insert(key, result.size());
            result.append(record);
            continue;
        }
        Record &held = result[*place];
        if (record.addedAt < held.addedAt
            || (record.addedAt == held.addedAt && comesBefore(record.id, held.id)))
            held = record;
    }
    return result;
}

/// Equal times by id, ascending both ways round.
template <class Record> void sortOldestFirst(QList<Record> &records)
{
    std::stable_sort(records.begin(), records.end(), [](const Record &a, const Record &b) {
        return a.addedAt != b.addedAt ? a.addedAt < b.addedAt : comesBefore(a.id, b.id);
    });
}

template <class Record> void sortNewestFirst(QList<Record> &records, Timestamp Record::*time)
{
    std::stable_sort(records.begin(), records.end(), [time](const Record &a, const Record &b) {
        return a.*time != b.*time ? a.*time > b.*time : comesBefore(a.id, b.id);
    });
}

} // namespace nimbrelle::SyncMerge
