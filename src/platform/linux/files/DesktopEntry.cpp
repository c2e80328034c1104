#include "platform/linux/files/DesktopEntry.h"

#include "frame/AtomicFile.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

QHash<QString, QString> mainGroup(const QByteArray &file)
{
    QHash<QString, QString> values;
    bool isInside = false;
    for (const QByteArray &raw : file.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) {
            isInside = line == "[Desktop Entry]";
            continue;
        }
        const qsizetype sign = line.indexOf('=');
        if (isInside && sign > 0 && !line.startsWith('#'))
            values.insert(QString::fromUtf8(line.first(sign).trimmed()),
                QString::fromUtf8(line.mid(sign + 1).trimmed()));
    }
    return values;
}

/// One argument as the Exec key wants it: in double quotes with the four special signs escaped; then every
/// backslash once more, since the value is a string, and every percent sign doubled.
QString execArgument(QString argument)
{
    for (const QChar special : {u'\\', u'"', u'`', u'$'})
        argument.replace(special, QString(u'\\') + special);
    argument.replace(u'\\', u"\\\\"_s);
    argument.replace(u'%', u"%%"_s);
    return u'"' + argument + u'"';
}

/// The file name of the first word of an Exec key.
QString programOf(const QString &exec)
{
    QString first = exec.section(u' ', 0, 0, QString::SectionSkipEmpty);
    if (exec.startsWith(u'"'))
        first = exec.section(u'"', 1, 1);
    return first.section(u'/', -1);
}

bool isListed(const QHash<QString, QString> &values)
{
    const QString type = values.value(u"Type"_s, u"Application"_s);
    return type == u"Application" && values.value(u"NoDisplay"_s) != u"true";
}

} // namespace

QStringList sessionLanguages()
{
    QStringList languages;
    for (const QString &tag : QLocale::system().uiLanguages()) {
        QString name = tag;
        name.replace(u'-', u'_');
        languages.append(name);
    }
    languages.append(QLocale::system().name());
    return languages;
}

std::optional<DesktopEntry> desktopEntryOf(const QByteArray &file, const QStringList &languages)
{
    const QHash<QString, QString> values = mainGroup(file);
    DesktopEntry entry{values.value(u"Name"_s), values.value(u"StartupWMClass"_s),
        values.value(u"Hidden"_s) == u"true" || values.value(u"X-GNOME-Autostart-enabled"_s) == u"false",
        isListed(values), programOf(values.value(u"Exec"_s)), values.value(u"Icon"_s)};
    if (entry.name.isEmpty())
        return std::nullopt;
    for (const QString &language : languages) {
        const QString name = values.value(u"Name[%1]"_s.arg(language));
        if (name.isEmpty())
            continue;
        entry.name = name;
        break;
    }
    return entry;
}

QByteArray autostartEntry(const QString &name, const QStringList &command)
{
    QStringList quoted;
    for (const QString &argument : command)
        quoted.append(execArgument(argument));
    return u"[Desktop Entry]\nType=Application\nName=%1\nExec=%2\nTerminal=false\n"_s
        .arg(name, quoted.join(u' '))
        .toUtf8();
}

std::optional<QString> ProgramNames::nameOf(const QString &windowClass)
{
    if (!m_isRead)
        read();
    const auto found = m_names.constFind(windowClass.toLower());
    return found == m_names.constEnd() ? std::nullopt : std::optional{*found};
}

void ProgramNames::read()
{
    m_isRead = true;
    const QStringList languages = sessionLanguages();
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDirIterator files(folder, {u"*.desktop"_s}, QDir::Files);
        while (files.hasNext()) {
            const auto bytes = readFile(files.next());
            const auto entry = bytes ? desktopEntryOf(*bytes, languages) : std::nullopt;
            if (!entry || entry->isHidden)
                continue;
            const QString id = files.fileInfo().completeBaseName();
            // The user's own folder comes first, and what it says stands.
            for (const QString &key : {entry->windowClass, id, id.section(u'.', -1)})
                if (!key.isEmpty() && !m_names.contains(key.toLower()))
                    m_names.insert(key.toLower(), entry->name);
        }
    }
}

} // namespace nimbrelle
