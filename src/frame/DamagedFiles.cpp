#include "frame/DamagedFiles.h"

#include "frame/Clock.h"
#include "frame/LocalDateTime.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

const QRegularExpression &keptName()
{
    static const QRegularExpression pattern(u"\\.damaged-(\\d{8}-\\d{6}(?:-\\d+)?)\\."_s);
    return pattern;
}

QString dateIn(const QString &name)
{
    return keptName().match(name).captured(1);
}

// What can't be read, or finds no room a second time, is moved as it is.
WriteResult keepAs(const QString &kept, const QString &path, FileMode mode, FileCalls &calls)
{
    const auto bytes = readFile(path);
    if (bytes && replaceFile(kept, *bytes, mode, calls))
        return {};
    const bool isMoved =
        calls.rename(QFile::encodeName(path).constData(), QFile::encodeName(kept).constData()) == 0;
    return isMoved ? WriteResult() : WriteResult::ofErrno();
}

} // namespace

void DamagedFiles::add(const QString &path)
{
    if (QFileInfo(path).isFile())
        m_paths.insert(path);
}

WriteResult DamagedFiles::keep(const QString &path, FileMode mode)
{
    if (!m_paths.contains(path))
        return {};
    const WriteResult result =
        QFileInfo::exists(path) ? keepAs(nameFor(path), path, mode, m_writer.calls()) : WriteResult();
    if (result)
        m_paths.remove(path);
    return result;
}

// Never the name of a file that was kept before.
QString DamagedFiles::nameFor(const QString &path) const
{
    const QFileInfo file(path);
    const QString stem = u"%1/%2.damaged-%3"_s.arg(
        file.path(), file.completeBaseName(), localDateTime(m_clock.now()).toString(fileTimeForm));
    QString name = stem + u'.' + file.suffix();
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = u"%1-%2.%3"_s.arg(stem).arg(i).arg(file.suffix());
    return name;
}

QStringList DamagedFiles::keptIn(const QString &directory)
{
    QStringList names = QDir(directory).entryList({u"*.damaged-*"_s}, QDir::Files, QDir::Name);
    names.removeIf([](const QString &name) { return dateIn(name).isEmpty(); });
    std::ranges::stable_sort(names, {}, dateIn);
    return names;
}

} // namespace nimbrelle
