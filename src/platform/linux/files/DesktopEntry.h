#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace nimbrelle {

/// What we read of a ".desktop" file's main group.
struct DesktopEntry {
    QString name; ///< in the first of the wanted languages that it has, else the plain one
    QString windowClass; ///< StartupWMClass; empty when not told
    bool isHidden = false; ///< taken out of service by its user
    bool isListed = true; ///< a program that menus show
    QString program = {}; ///< the file name of what it starts; empty when not told
    QString icon = {}; ///< a name in the icon theme, or the path of a file

    bool operator==(const DesktopEntry &) const = default;
};

/// Absent when there is no main group with a name. `languages` such as "zh_CN", the best first.
std::optional<DesktopEntry> desktopEntryOf(const QByteArray &file, const QStringList &languages);

/// The session's languages as desktop files write them, the best first.
QStringList sessionLanguages();

/// A whole autostart entry that runs `command` (program first, then arguments), quoted as the format wants
/// it.
QByteArray autostartEntry(const QString &name, const QStringList &command);

/// The names of installed programs by window class, read at the first question.
class ProgramNames {
public:
    /// Absent when no installed program claims the class.
    std::optional<QString> nameOf(const QString &windowClass);

private:
    void read();

    bool m_isRead = false;
    QHash<QString, QString> m_names;
};

} // namespace nimbrelle
