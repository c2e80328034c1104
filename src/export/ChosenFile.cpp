#include "export/ChosenFile.h"

#include "frame/AppPaths.h"
#include "frame/AtomicFile.h"
#include "frame/Failure.h"

#include <QFileInfo>

namespace nimbrelle {

using namespace Qt::StringLiterals;

QByteArray readChosenFile(const QString &file, qint64 limit, const QString &tooLarge)
{
    const QFileInfo info(file);
    if (!info.isFile())
        throw Failure(u"找不到文件 "_s + file);
    if (info.size() > limit)
        throw Failure(tooLarge);
    const auto bytes = readFile(file);
    if (!bytes)
        throw Failure(u"读不了文件 "_s + file);
    return *bytes;
}

void refuseDataFolder(const QString &file, const AppPaths &paths)
{
    const QFileInfo target(file);
    const QString written = target.exists() ? target.canonicalFilePath() : target.absoluteFilePath();
    const QString folder = QFileInfo(QFileInfo(written).path()).canonicalFilePath();
    const auto isIt = [&folder](const QString &own) {
        return !folder.isEmpty() && folder == QFileInfo(own).canonicalFilePath();
    };
    if (isIt(paths.supportDir) || isIt(paths.backups))
        throw Failure(u"不能写进 Nimbrelle 自己的数据文件夹，请换一个地方"_s);
}

} // namespace nimbrelle
