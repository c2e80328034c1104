#include "notebook/LearningLog.h"

#include "frame/AppPaths.h"
#include "frame/AtomicFile.h"
#include "frame/Clock.h"
#include "frame/RecordCodec.h"
#include "frame/Text.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace nimbrelle {

LearningLog::LearningLog(const AppPaths &paths, const Clock &clock) : m_path(paths.log), m_clock(clock) { }

LearningLog &LearningLog::shared()
{
    static LearningLog log(AppPaths::shared(), SystemClock::shared());
    return log;
}

void LearningLog::add(LogKind kind, const QString &word, const std::optional<QString> &detail)
{
    auto line = encode(
        Event{.time = m_clock.now(), .kind = caseText(kind), .word = word, .detail = detail}, TextForm::line);
    if (!line)
        return;
    line->append('\n');
    // Appending never empties an existing file, and creates it only where there is none.
    const int file =
        ::open(QFile::encodeName(m_path).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0)
        return;
    [[maybe_unused]] const ssize_t written =
        ::write(file, line->constData(), static_cast<std::size_t>(line->size()));
    ::close(file);
}

QStringList LearningLog::readLines() const
{
    const auto bytes = readFile(m_path);
    if (!bytes || !QUtf8StringView(*bytes).isValidUtf8())
        return {};
    return QString::fromUtf8(*bytes).split(u'\n', Qt::SkipEmptyParts);
}

LearningLog::Stamp LearningLog::stamp() const
{
    const QFileInfo file(m_path);
    if (!file.exists())
        return {};
    return {.size = file.size(), .modified = file.lastModified().toMSecsSinceEpoch()};
}

void LearningLog::replaceAll(const QStringList &lines)
{
    QByteArray text;
    for (const QString &line : lines)
        text += wellFormed(line).toUtf8() + '\n';
    replaceFile(m_path, text);
}

} // namespace nimbrelle
