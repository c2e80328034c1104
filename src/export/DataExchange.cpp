#include "export/DataExchange.h"

#include "export/WordImport.h"
#include "export/WordsFile.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/DataWriter.h"
#include "frame/Failure.h"
#include "notebook/WordStore.h"
#include "platform/Background.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

DataExchange::DataExchange(const Parts &parts) : m_parts(parts)
{
    connect(&parts.backups, &LocalBackups::changed, this, &DataExchange::changed);
}

QString DataExchange::suggestedName(ExportKind kind) const
{
    return exportName(kind, m_parts.clock.now());
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
    const SyncBundle local = m_parts.words.snapshot();
    Backup::Content backup;
    BackupPlan plan;
    const std::function<void()> work = [&] {
        backup = Backup::read(file);
        plan = mergeOf(local, backup).plan;
    };
    try {
        co_await m_parts.background.run(work);
        if (stop.stop_requested())
            co_return;
        plan.coachDays = m_parts.coach.missing(backup.coach).size();
        m_backup = std::move(backup);
        m_plan = plan;
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

// What was learned while the merge was made belongs into it: then it is made once more.
QCoro::Task<> DataExchange::runMerge(Backup::Content backup, QString source, std::stop_token stop)
{
    SyncBundle local;
    BackupMerge merge;
    const std::function<void()> work = [&] { merge = mergeOf(local, backup); };
    try {
        co_await m_parts.backups.beforeImport(source);
        do {
            if (stop.stop_requested())
                co_return;
            local = m_parts.words.snapshot();
            co_await m_parts.background.run(work);
            if (stop.stop_requested())
                co_return;
        } while (local != m_parts.words.snapshot());
        const BackupPlan done = nimbrelle::bringBack(merge, backup.coach, m_parts.words, m_parts.coach);
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
