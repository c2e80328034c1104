#include "settings/UnwrittenText.h"

#include <QFileInfo>
#include <QMap>
#include <QStringList>

#include <algorithm>
#include <cerrno>

namespace nimbrelle::UnwrittenText {

using namespace Qt::StringLiterals;

namespace {

const QString backupsName = u"backups"_s;

QString contentOf(const QString &path)
{
    static const QMap<QString, QString> contents{{u"config.json"_s, u"设置"_s},
        {u"words.json"_s, u"生词本"_s}, {u"notes.json"_s, u"句子笔记"_s}, {u"grammar.json"_s, u"语法记录"_s},
        {u"affixes.json"_s, u"词缀记录"_s}, {u"deleted.json"_s, u"删除记录"_s},
        {u"review-stats.json"_s, u"今天的复习次数"_s}, {u"learning-log.jsonl"_s, u"学习日志"_s},
        {u"coach.json"_s, u"教练对话"_s}, {u"sync-state.json"_s, u"同步记录"_s},
        {u"sync-known.json"_s, u"同步记录"_s}, {u"lookup-queue.json"_s, u"等着查的词"_s},
        {backupsName, u"自动备份"_s}};
    const QString name = QFileInfo(path).fileName();
    return contents.value(name, name);
}

QString reasonOf(int error)
{
    const bool isFolderGone = error == ENOENT || error == ENOTDIR;
    return isFolderGone ? u"数据文件夹不见了"_s : WriteResult{.error = error}.reason();
}

QString placeOf(const QStringList &paths, const QString &home)
{
    const QString place = paths.size() == 1 ? paths.first() : QFileInfo(paths.first()).path();
    return !home.isEmpty() && place.startsWith(home + u'/') ? u'~' + place.mid(home.size()) : place;
}

QString sentence(const QStringList &paths, int error, const QString &home)
{
    constexpr qsizetype named = 3;
    QStringList contents;
    for (const QString &path : paths)
        contents.append(contentOf(path));
    contents.removeDuplicates();
    const QString rest = contents.size() > named ? u"等 %1 项"_s.arg(contents.size()) : QString();
    return u"写不进%1%2（%3）：%4"_s.arg(contents.first(std::min(named, contents.size())).join(u'、'), rest,
        placeOf(paths, home), reasonOf(error));
}

} // namespace

QString line(const QList<UnwrittenFile> &files, const QString &home)
{
    QList<int> errors;
    QMap<int, QStringList> paths;
    for (const UnwrittenFile &file : files) {
        if (!errors.contains(file.error))
            errors.append(file.error);
        paths[file.error].append(file.path);
    }
    QStringList sentences;
    for (const int error : errors)
        sentences.append(sentence(paths[error], error, home));
    return sentences.join(u'；');
}

QString note(const QList<UnwrittenFile> &files, const QString &home)
{
    if (files.isEmpty())
        return {};
    const bool isOnlyBackup = std::ranges::all_of(
        files, [](const UnwrittenFile &file) { return QFileInfo(file.path).fileName() == backupsName; });
    return line(files, home)
        + (isOnlyBackup ? u"。同步照常，只是今天还没有备份。"_s : u"。写成之前，新的改动只在内存里。"_s);
}

} // namespace nimbrelle::UnwrittenText
