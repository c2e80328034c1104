#include "frame/DataFolder.h"

#include "frame/AppPaths.h"
#include "frame/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace nimbrelle {

namespace {

/// Those of the data files themselves, and hidden ones: the lock, temporaries. What is kept of a data file
/// under another name begins with its name.
bool isOurs(const QFileInfo &entry, const AppPaths &paths)
{
    const auto belongsTo = [&entry](const QString &file) {
        return entry.fileName().startsWith(QFileInfo(file).completeBaseName());
    };
    if (entry.isDir() && !entry.isSymLink())
        return entry.fileName() == QFileInfo(paths.backups).fileName();
    return entry.isFile() && (entry.isHidden() || std::ranges::any_of(paths.files(), belongsTo));
}

bool holdsOnlyOurs(const AppPaths &paths)
{
    const auto entries =
        QDir(paths.supportDir)
            .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return QFile::exists(paths.config)
        && std::ranges::all_of(entries, [&paths](const QFileInfo &entry) { return isOurs(entry, paths); });
}

} // namespace

void prepareDataFolder(const AppPaths &paths, FolderChoice choice)
{
    QDir().mkpath(QFileInfo(QDir::cleanPath(paths.supportDir)).path());
    const bool isMade = ::mkdir(QFile::encodeName(paths.supportDir).constData(), S_IRWXU) == 0;
    if (!isMade && (choice == FolderChoice::ours || holdsOnlyOurs(paths)))
        restrictToOwner(paths.supportDir);
}

} // namespace nimbrelle
