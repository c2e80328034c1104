#include "platform/linux/files/DesktopFileApplications.h"

#include "frame/AtomicFile.h"

#include <QCollator>
#include <QDir>
#include <QDirIterator>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

QString idOf(const QString &folder, const QString &path)
{
    QString id = QDir(folder).relativeFilePath(path);
    id.chop(static_cast<int>(std::size(".desktop")) - 1);
    return id.replace(u'/', u'-');
}

void sortByName(QList<InstalledApplication> &applications)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::stable_sort(
        applications, [&](const auto &a, const auto &b) { return collator.compare(a.name, b.name) < 0; });
}

} // namespace

QString bundleIDOf(const DesktopEntry &entry, const QString &id, const QList<WindowClass> &openWindows)
{
    const QStringList names{entry.windowClass, id, id.section(u'.', -1), entry.program};
    for (const WindowClass &window : openWindows)
        for (const QString &half : {window.name, window.instance})
            if (!half.isEmpty() && names.contains(half, Qt::CaseInsensitive))
                return programKind(window.instance, window.name).bundleID;
    return programKind(entry.program, entry.windowClass.isEmpty() ? id : entry.windowClass).bundleID;
}

QList<InstalledApplication> DesktopFileApplications::all() const
{
    const QStringList languages = sessionLanguages();
    const QList<WindowClass> windows = m_openWindows();
    QList<InstalledApplication> applications;
    QSet<QString> seen; // the user's own folder comes first, and what it says stands
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDirIterator files(folder, {u"*.desktop"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            const QString id = idOf(folder, path);
            const auto bytes = readFile(path);
            const auto entry = bytes ? desktopEntryOf(*bytes, languages) : std::nullopt;
            if (!entry || seen.contains(id))
                continue;
            seen.insert(id);
            if (entry->isListed && !entry->isHidden && entry->program != u"nimbrelle")
                applications.append({.bundleID = bundleIDOf(*entry, id, windows),
                    .name = entry->name,
                    .icon = entry->icon,
                    .program = entry->program});
        }
    }
    sortByName(applications);
    return applications;
}

} // namespace nimbrelle
