#include "shell/GrowthFolder.h"

#include "frame/AppPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString folderBeside(const QString &supportDir)
{
    const QDir parent = QFileInfo(QDir::cleanPath(supportDir)).absoluteDir();
    return parent.filePath(u"Nimbrelle 成长档案"_s);
}

/// The entry itself and not what a link leads to; all zero when there is none.
struct stat statusOf(const QString &path)
{
    struct stat status { };
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        status = {};
    return status;
}

bool isWritableForOthers(const struct stat &status)
{
    return (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

/// Nobody but the user can change it.
bool isUsersAlone(const QString &path, mode_t type)
{
    const struct stat status = statusOf(path);
    return (status.st_mode & S_IFMT) == type && status.st_uid == ::geteuid() && !isWritableForOthers(status);
}

/// Nobody but their owners can put something else in place of what stands in it.
bool keepsItsEntries(const QString &folder)
{
    const struct stat status = statusOf(folder);
    return S_ISDIR(status.st_mode) && (!isWritableForOthers(status) || (status.st_mode & S_ISVTX) != 0);
}

} // namespace

GrowthFolder::GrowthFolder(const AppPaths &paths) : m_path(folderBeside(paths.supportDir)) { }

QString GrowthFolder::programs() const
{
    return m_path + u"/程序"_s;
}

QString GrowthFolder::script() const
{
    return programs() + u"/journey.py"_s;
}

QString GrowthFolder::report() const
{
    return m_path + u"/成长档案.html"_s;
}

bool GrowthFolder::hasOwnScript() const
{
    return keepsItsEntries(QFileInfo(QFileInfo(m_path).path()).canonicalFilePath())
        && isUsersAlone(m_path, S_IFDIR) && isUsersAlone(programs(), S_IFDIR)
        && isUsersAlone(script(), S_IFREG);
}

} // namespace nimbrelle
