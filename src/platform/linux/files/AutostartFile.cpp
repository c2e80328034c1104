#include "platform/linux/files/AutostartFile.h"

#include "frame/AtomicFile.h"
#include "platform/linux/files/DesktopEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

namespace nimbrelle {

AutostartFile::AutostartFile(QString folder, QStringList command)
    : m_folder(std::move(folder)), m_command(std::move(command))
{
}

AutostartFile AutostartFile::ofThisProgram()
{
    // An image that mounts itself runs from a path that is another one next time, and tells its lasting one.
    const QString image = qEnvironmentVariable("APPIMAGE");
    return AutostartFile(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart"_s,
        {image.isEmpty() ? QCoreApplication::applicationFilePath() : image});
}

bool AutostartFile::isEnabled() const
{
    const auto bytes = readFile(path());
    const auto entry = bytes ? desktopEntryOf(*bytes, {}) : std::nullopt;
    return entry && !entry->isHidden;
}

std::optional<QString> AutostartFile::setEnabled(bool enabled)
{
    errno = 0;
    const bool isDone = enabled
        ? QDir().mkpath(m_folder) && replaceFile(path(), autostartEntry(u"Nimbrelle"_s, m_command))
        : !QFile::exists(path()) || QFile::remove(path());
    if (isDone)
        return std::nullopt;
    return path() + u": "_s + QString::fromLocal8Bit(std::strerror(errno));
}

QString AutostartFile::path() const
{
    return m_folder + u"/nimbrelle.desktop"_s;
}

} // namespace nimbrelle
