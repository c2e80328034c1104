#include "notebook/LearningLog.h"

#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/LineFile.h"
#include "frame/RecordCodec.h"
#include "frame/Text.h"

#include <QDateTime>
#include <QFileInfo>

namespace nimbrelle {

namespace {

bool isText(QByteArrayView line)
{
    return QUtf8StringView(line).isValidUtf8();
}

} // namespace

LearningLog::LearningLog(const AppPaths &paths, const Clock &clock, DataWriter &writer)
    : m_path(paths.log), m_clock(clock), m_writer(writer)
{
}

LearningLog &LearningLog::shared()
{
    static LearningLog log(AppPaths::shared(), SystemClock::shared());
    return log;
}

void LearningLog::add(LogKind kind, const QString &word, const std::optional<QString> &detail)
{
    const Event event{.time = m_clock.now(), .kind = caseText(kind), .word = word, .detail = detail};
    if (const auto line = encode(event, TextForm::line))
        m_unwritten.append(*line);
    writeUnwritten();
}

void LearningLog::writeUnwritten()
{
    m_writer.report(m_path, appendUnwritten(), {.owner = this, .write = [this] { writeUnwritten(); }});
}

WriteResult LearningLog::appendUnwritten()
{
    WriteResult result;
    while (result && !m_unwritten.isEmpty()) {
        result = appendLine(m_path, m_unwritten.first(), m_writer.calls());
        if (result)
            m_unwritten.removeFirst();
    }
    return result;
}

QStringList LearningLog::readLines() const
{
    const QByteArray bytes = readFile(m_path).value_or(QByteArray());
    QStringList lines;
    for (const QByteArrayView line : linesOf(bytes)) {
        if (isText(line))
            lines.append(QString::fromUtf8(line));
    }
    return lines;
}

QList<LearningLog::Event> LearningLog::events() const
{
    const QByteArray bytes = readFile(m_path).value_or(QByteArray());
    QList<Event> events;
    for (const QByteArrayView line : linesOf(bytes)) {
        if (const auto event = decode<Event>(line))
            events.append(*event);
    }
    return events;
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
    const auto bytes = readFile(m_path);
    if (!bytes && QFileInfo::exists(m_path))
        return;
    QByteArray text;
    for (const QString &line : lines)
        text += wellFormed(line).toUtf8() + '\n';
    for (const QByteArrayView line : linesOf(bytes.value_or(QByteArray()))) {
        if (!isText(line))
            text.append(line).append('\n');
    }
    const WriteResult replaced = replaceFile(m_path, text, FileMode::ordinary, m_writer.calls());
    m_writer.report(m_path, replaced ? appendUnwritten() : replaced);
}

} // namespace nimbrelle
