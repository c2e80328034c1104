#include "shell/GrowthArchive.h"

namespace nimbrelle {

GrowthArchive::GrowthArchive(const AppPaths &paths, QObject *parent) : QObject(parent), m_folder(paths)
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

void GrowthArchive::update()
{
    if (isUpdating())
        return;
    if (isInstalled())
        m_generator.start(QString::fromLatin1(GrowthFolder::interpreter), {script()});
    else
        emit updated();
}

} // namespace nimbrelle
