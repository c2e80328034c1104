#include "shell/GrowthArchive.h"

#include "frame/AppPaths.h"

#include <QDir>
#include <QFileInfo>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString folderBeside(const QString &supportDir)
{
    const QDir parent = QFileInfo(QDir::cleanPath(supportDir)).absoluteDir();
    return parent.filePath(u"Nimbrelle 成长档案"_s);
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
    return QFileInfo::exists(script());
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
