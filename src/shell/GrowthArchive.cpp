#include "shell/GrowthArchive.h"

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

GrowthArchive::GrowthArchive(const AppPaths &paths, QObject *parent)
    : QObject(parent), m_folder(folderBeside(paths.supportDir))
{
    m_generator.setStandardInputFile(QProcess::nullDevice());
    m_generator.setStandardOutputFile(QProcess::nullDevice());
    m_generator.setStandardErrorFile(QProcess::nullDevice());
    connect(&m_generator, &QProcess::finished, this, &GrowthArchive::updated);
    connect(&m_generator, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) // it then never finishes
            emit updated();
    });
}

GrowthArchive::~GrowthArchive()
{
    m_generator.disconnect(this);
}

QString GrowthArchive::script() const
{
    return m_folder + u"/程序/journey.py"_s;
}

QString GrowthArchive::report() const
{
    return m_folder + u"/成长档案.html"_s;
}

bool GrowthArchive::isInstalled() const
{
    return keepsItsEntries(QFileInfo(QFileInfo(m_folder).path()).canonicalFilePath())
        && isUsersAlone(m_folder, S_IFDIR) && isUsersAlone(QFileInfo(script()).path(), S_IFDIR)
        && isUsersAlone(script(), S_IFREG);
}

void GrowthArchive::update()
{
    if (isUpdating())
        return;
    if (isInstalled())
        m_generator.start(u"/usr/bin/python3"_s, {script()});
    else
        emit updated();
}

} // namespace nimbrelle
