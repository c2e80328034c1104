#include "platform/linux/DesktopFileApplications.h"

#include "frame/AtomicFile.h"
#include "platform/linux/WindowClasses.h"

#include <QCollator>
#include <QDir>
#include <QDirIterator>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

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
    const QList<WindowClass> windows = openWindows();
    QList<InstalledApplication> applications;
    QSet<QString> seen; // the user's own folder comes first, and what it says stands
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDirIterator files(folder, {QStringLiteral("*.desktop")}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            const QString id = idOf(folder, path);
            const auto bytes = readFile(path);
            const auto entry = bytes ? desktopEntryOf(*bytes, languages) : std::nullopt;
            if (!entry || seen.contains(id))
                continue;
            seen.insert(id);
            if (entry->isListed && !entry->isHidden && entry->program != u"nimbrelle")
                applications.append({bundleIDOf(*entry, id, windows), entry->name, entry->icon});
        }
    }
    sortByName(applications);
    return applications;
}

QList<WindowClass> DesktopFileApplications::openWindows() const
{
    QList<WindowClass> classes;
    if (!m_x.isOpen())
        return classes;
    for (const quint32 window : m_x.values(m_x.root(), m_x.atom("_NET_CLIENT_LIST"))) {
        const QList<QByteArray> halves = m_x.property(window, XCB_ATOM_WM_CLASS, 1024).split('\0');
        if (!m_x.isOwn(window))
            classes.append({QString::fromUtf8(halves.value(0)), QString::fromUtf8(halves.value(1))});
    }
    return classes;
}

} // namespace nimbrelle
