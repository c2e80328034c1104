#include "export/BackupMerge.h"

#include "frame/LocalDateTime.h"
#include "notebook/WordStore.h"
#include "sync/BundleForm.h"
#include "sync/SyncMerge.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// The notebook as it is, in the form that every merge gives, and as it becomes.
struct Merged {
    SyncBundle before, after;
};

Merged mergedOf(const SyncBundle &local, const SyncBundle &backup)
{
    const SyncBundle here = BundleForm::normalized(local);
    return {.before = SyncMerge::merge(here, here), .after = SyncMerge::merge(here, backup)};
}

// By spelling, since a merge may give a word that both sides have the other's id.
QHash<QString, const WordEntry *> bySpelling(const QList<WordEntry> &words)
{
    QHash<QString, const WordEntry *> found;
    found.reserve(words.size());
    for (const WordEntry &word : words)
        found.insert(headwordKey(word.headword), &word);
    return found;
}

qsizetype buriedOf(const QList<WordEntry> &backup, const Merged &merged)
{
    QSet<QString> deletedHere;
    for (const Tombstone &tombstone : merged.before.deleted)
        deletedHere.insert(tombstone.id);
    const auto after = bySpelling(merged.after.words);
    return std::ranges::count_if(backup, [&](const WordEntry &word) {
        return deletedHere.contains(idText(word.id)) && !after.contains(headwordKey(word.headword));
    });
}

template <class Record> qsizetype newRecords(const QList<Record> &before, const QList<Record> &after)
{
    QSet<decltype(Record::id)> known;
    for (const Record &record : before)
        known.insert(record.id);
    return std::ranges::count_if(
        after, [&known](const Record &record) { return !known.contains(record.id); });
}

qsizetype newOthers(const Merged &merged)
{
    const auto &[before, after] = merged;
    return newRecords(before.notes, after.notes) + newRecords(before.grammar, after.grammar)
        + newRecords(before.affixes, after.affixes) + after.log.size() - before.log.size();
}

using Deleted = QSet<QString>;

Deleted newlyDeleted(const Merged &merged)
{
    Deleted ids;
    for (const Tombstone &tombstone : merged.after.deleted)
        ids.insert(tombstone.id);
    for (const Tombstone &tombstone : merged.before.deleted)
        ids.remove(tombstone.id);
    return ids;
}

template <class Record> qsizetype removedOf(const QList<Record> &records, const Deleted &deleted)
{
    return std::ranges::count_if(
        records, [&deleted](const Record &record) { return deleted.contains(idText(record.id)); });
}

qsizetype removedOthers(const SyncBundle &before, const Deleted &deleted)
{
    qsizetype count = removedOf(before.notes, deleted) + removedOf(before.grammar, deleted)
        + removedOf(before.affixes, deleted);
    for (const WordEntry &word : before.words)
        count += removedOf(word.examples, deleted) + removedOf(word.notes.value_or(QList<AINote>()), deleted);
    return count;
}

/// Whether more became of it than that parts of it went.
bool isChanged(WordEntry before, const WordEntry &after, const Deleted &deleted)
{
    const auto isGone = [&deleted](const auto &record) { return deleted.contains(idText(record.id)); };
    if (before == after)
        return false;
    before.examples.removeIf(isGone);
    if (before.notes)
        before.notes->removeIf(isGone);
    return before != after;
}

BackupPlan planOf(const Merged &merged, const Backup::Content &backup)
{
    const Deleted deleted = newlyDeleted(merged);
    BackupPlan plan{.madeAt = backup.madeAt,
        .words = backup.notebook.words.size(),
        .buried = buriedOf(backup.notebook.words, merged),
        .otherRecords = newOthers(merged),
        .removedRecords = removedOthers(merged.before, deleted),
        .tombstones = deleted.size(),
        .hasSettings = merged.after.settings != merged.before.settings};
    const auto before = bySpelling(merged.before.words), after = bySpelling(merged.after.words);
    for (const auto &[key, word] : after.asKeyValueRange()) {
        const WordEntry *known = before.value(key);
        plan.added += known ? 0 : 1;
        plan.changed += known && isChanged(*known, *word, deleted) ? 1 : 0;
    }
    for (const QString &key : before.keys())
        plan.removed += after.contains(key) ? 0 : 1;
    return plan;
}

} // namespace

QString BackupPlan::resultText() const
{
    if (changesNothing())
        return u"这里什么都不缺，没有改动"_s;
    QString text = u"已导入备份：新增 %1 个词，补全 %2 个"_s.arg(added).arg(changed);
    if (removed > 0)
        text += u"，去掉 %1 个"_s.arg(removed);
    if (removedRecords > 0)
        text += u"，去掉 %1 条笔记和句子"_s.arg(removedRecords);
    return text;
}

bool BackupPlan::changesNothing() const
{
    return added + changed + removed + otherRecords + removedRecords + tombstones + coachDays == 0
        && !hasSettings;
}

QStringList BackupPlan::lines() const
{
    QStringList lines{u"%1 的备份，有 %2 个词"_s.arg(localTimeText(localDateTime(madeAt))).arg(words)};
    const auto tell = [&lines](qsizetype count, const QString &text) {
        if (count > 0)
            lines.append(text.arg(count));
    };
    tell(added, u"新增 %1 个词"_s);
    tell(changed, u"补全 %1 个已有的词"_s);
    tell(removed, u"去掉 %1 个词：备份里已经删除"_s);
    tell(removedRecords, u"去掉 %1 条笔记和句子：备份里已经删除"_s);
    tell(tombstones - removed - removedRecords, u"另外记下 %1 处备份里的删除"_s);
    tell(buried, u"%1 个词在这里删除过，不会回来"_s);
    tell(otherRecords, u"新增 %1 条笔记和学习记录"_s);
    tell(coachDays, u"新增 %1 天的教练对话"_s);
    if (hasSettings)
        lines.append(u"复习设置用备份里的：它改得更晚"_s);
    if (changesNothing())
        lines.append(u"这里什么都不缺，不用导入"_s);
    return lines;
}

BackupMerge mergeOf(const SyncBundle &local, const Backup::Content &backup)
{
    const Merged merged = mergedOf(local, backup.notebook);
    return {.merged = merged.after, .plan = planOf(merged, backup)};
}

BackupPlan bringBack(
    const BackupMerge &merge, const QList<CoachDay> &days, WordStore &store, CoachHistory &coach)
{
    if (!merge.plan.changesNothing())
        store.applySync(merge.merged);
    BackupPlan done = merge.plan;
    done.coachDays = coach.missing(days).size();
    if (done.coachDays > 0)
        coach.add(days);
    return done;
}

} // namespace nimbrelle
