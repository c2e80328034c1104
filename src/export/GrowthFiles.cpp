#include "export/GrowthFiles.h"

#include "export/ChosenFile.h"
#include "frame/AppPaths.h"
#include "frame/DayKey.h"
#include "frame/RecordFile.h"

#include <QFileInfo>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

Failure unreadable(const QString &path)
{
    return Failure(u"%1 读不出来，先不写成长档案。"_s.arg(QFileInfo(path).fileName()));
}

template <class Record> QList<Record> readList(const QString &path)
{
    const auto records = readRecordFile<QList<Record>>(path);
    if (!records && QFileInfo::exists(path))
        throw unreadable(path);
    return records.value_or(QList<Record>());
}

} // namespace

GrowthSource readGrowthSource(
    const AppPaths &paths, const LearningLog &log, const AppConfig &config, Timestamp now)
{
    if (QFileInfo::exists(paths.log) && !QFileInfo(paths.log).isReadable())
        throw unreadable(paths.log);
    const auto stats = readRecordFile<ReviewStats>(paths.reviewStats);
    return {.words = readList<WordEntry>(paths.words),
        .sentenceNotes = readList<AINote>(paths.notes),
        .grammar = readList<GrammarEncounter>(paths.grammar),
        .affixes = readList<AffixEncounter>(paths.affixes),
        .events = log.events(),
        .config = config,
        .newLearned = stats && stats->day == DayKey::string(now) ? stats->newLearned : 0};
}

void writeGrowthPage(const QString &path, QByteArrayView page, const AppPaths &paths)
{
    if (path.isEmpty() || QFileInfo(path).isDir())
        throw Failure(u"要写明一个文件，比如 成长档案.html。"_s);
    refuseDataFolder(path, paths);
    if (const WriteResult result = replaceFile(path, page, FileMode::ownerOnly); !result)
        throw Failure(u"写不了 %1：%2"_s.arg(path, result.reason()));
}

} // namespace nimbrelle
