#include "export/DataExchange.h"

#include "export/WordImport.h"
#include "export/WordsFile.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/DataWriter.h"
#include "frame/Failure.h"
#include "frame/LocalDateTime.h"
#include "notebook/WordStore.h"
#include "platform/Background.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

DataExchange::DataExchange(const Parts &parts) : m_parts(parts)
{
    connect(&parts.backups, &LocalBackups::changed, this, &DataExchange::changed);
}

QDateTime DataExchange::localNow() const
{
    return localDateTime(m_parts.clock.now());
}

QString DataExchange::suggestedName(ExportKind kind) const
{
    return exportName(kind, m_parts.clock.now());
}

ImportParts DataExchange::importParts() const
{
    return {.words = m_parts.words,
        .coach = m_parts.coach,
        .background = m_parts.background,
        .backups = m_parts.backups};
}

void DataExchange::begin()
{
    m_isBusy = true;
    m_message.reset();
    m_plan.reset();
    m_backup.reset();
    emit changed();
}

void DataExchange::end(const std::optional<Message> &message)
{
    m_isBusy = false;
    m_message = message;
    emit changed();
}

void DataExchange::end(const std::exception &failure)
{
    end(Message{.isGood = false, .text = Failure::shownText(failure)});
}

void DataExchange::exportTo(ExportKind kind, const QString &file)
{
    if (m_isBusy)
        return;
    begin();
    DataWriter::shared().retry(); // a backup takes what is on disk
    runExport(kind, file, m_task.renew());
}

QCoro::Task<> DataExchange::runExport(ExportKind kind, QString file, std::stop_token stop)
{
    const ExportSource source{.paths = m_parts.paths,
        .words = m_parts.words.entries(),
        .config = m_parts.config.config(),
        .now = m_parts.clock.now()};
    QString told;
    const std::function<void()> work = [&] { told = nimbrelle::exportTo(file, kind, source); };
    try {
        co_await m_parts.background.run(work);
        if (!stop.stop_requested())
            end(Message{.isGood = true, .text = told});
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            end(failure);
    }
}

void DataExchange::readBackup(const QString &file)
{
    if (m_isBusy)
        return;
    begin();
    m_source = file;
    runReading(file, m_task.renew());
}

QCoro::Task<> DataExchange::runReading(QString file, std::stop_token stop)
{
    try {
        BackupReading reading = co_await nimbrelle::readBackup(importParts(), file, stop);
        m_backup = std::move(reading.backup);
        m_plan = reading.plan;
        end(std::nullopt);
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            end(failure);
    }
}

void DataExchange::bringBack()
{
    if (m_isBusy || !m_backup)
        return;
    const Backup::Content backup = *m_backup;
    begin();
    runMerge(backup, m_source, m_task.renew());
}

QCoro::Task<> DataExchange::runMerge(Backup::Content backup, QString source, std::stop_token stop)
{
    try {
        const BackupPlan done = co_await mergeBackup(importParts(), backup, source, stop);
        end(Message{.isGood = true, .text = done.resultText()});
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            end(failure);
    }
}

void DataExchange::dropBackup()
{
    m_backup.reset();
    m_plan.reset();
    emit changed();
}

void DataExchange::importWords(const QString &file)
{
    if (m_isBusy)
        return;
    begin();
    runImport(file, m_task.renew());
}

QCoro::Task<> DataExchange::runImport(QString file, std::stop_token stop)
{
    WordsFile::Words list;
    const std::function<void()> work = [&] { list = WordsFile::read(file); };
    try {
        co_await m_parts.background.run(work);
        if (stop.stop_requested())
            co_return;
        co_await m_parts.backups.beforeImport({});
        if (stop.stop_requested())
            co_return;
        const qsizetype added = m_parts.wordImport.add(list.words);
        end(Message{.isGood = true, .text = WordsFile::addedText(list, added)});
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            end(failure);
    }
}

} // namespace nimbrelle
