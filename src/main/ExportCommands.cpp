#include "main/ExportCommands.h"

#include "export/BackupImport.h"
#include "export/ExportFile.h"
#include "export/WordImport.h"
#include "export/WordsFile.h"
#include "frame/Failure.h"
#include "main/Services.h"

#include <QCoro/QCoroSignal>
#include <QDir>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

template <class Routine> int reporting(QTextStream &out, const Routine &routine)
{
    try {
        routine();
        return 0;
    } catch (const Failure &failure) {
        out << failure.text() << Qt::endl;
        return 1;
    }
}

void printPlan(const BackupPlan &plan, QTextStream &out)
{
    for (const QString &line : plan.lines())
        out << line << Qt::endl;
}

ImportParts importParts(Services &services)
{
    return {.words = services.words(),
        .coach = services.coachHistory(),
        .background = services.background(),
        .backups = services.backups()};
}

} // namespace

QString givenPath(const QString &value, QTextStream &)
{
    return value.isEmpty() ? value : QDir::current().absoluteFilePath(value);
}

QCoro::Task<int> exportData(ExportKind kind, OptionRun run)
{
    Services &services = run.services;
    co_return reporting(run.out, [&] {
        const ExportSource source{.paths = services.paths(),
            .words = services.words().entries(),
            .config = services.config().config(),
            .now = services.clock().now()};
        run.out << exportTo(run.value, kind, source) << Qt::endl;
    });
}

QCoro::Task<int> checkBackup(OptionRun run)
{
    try {
        const BackupReading reading = co_await readBackup(importParts(run.services), run.value);
        printPlan(reading.plan, run.out);
        co_return 0;
    } catch (const Failure &failure) {
        run.out << failure.text() << Qt::endl;
        co_return 1;
    }
}

QCoro::Task<int> importBackup(OptionRun run)
{
    const ImportParts parts = importParts(run.services);
    try {
        const BackupReading reading = co_await readBackup(parts, run.value);
        const BackupPlan done = co_await mergeBackup(parts, reading.backup, run.value);
        printPlan(done, run.out);
        if (!done.changesNothing())
            run.out << done.resultText() << Qt::endl;
        co_return 0;
    } catch (const Failure &failure) {
        run.out << failure.text() << Qt::endl;
        co_return 1;
    }
}

QCoro::Task<int> importWords(OptionRun run)
{
    WordImport &import = run.services.wordImport();
    const QMetaObject::Connection printing = QObject::connect(&import, &WordImport::wordSettled, &import,
        [&run](const QString &line) { run.out << line << Qt::endl; });
    bool isRead = false;
    try {
        WordsFile::Words list;
        const std::function<void()> reading = [&] { list = WordsFile::read(run.value); };
        co_await run.services.background().run(reading);
        co_await run.services.backups().beforeImport({});
        run.out << WordsFile::addedText(list, import.add(list.words)) << Qt::endl;
        isRead = true;
    } catch (const Failure &failure) {
        run.out << failure.text() << Qt::endl;
    }
    while (isRead && import.state() == WordImport::State::looking)
        co_await qCoro(&import, &WordImport::changed);
    QObject::disconnect(printing);
    if (isRead && import.total() > 0)
        run.out << import.statusText() << Qt::endl;
    co_return isRead &&import.state() == WordImport::State::idle ? 0 : 1;
}

} // namespace nimbrelle
