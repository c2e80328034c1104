#include "ai/AIClient.h"
#include "coach/CoachFacts.h"
#include "export/ExportFile.h"
#include "export/GrowthFiles.h"
#include "export/GrowthPage.h"
#include "frame/DayKey.h"
#include "frame/Failure.h"
#include "main/CommandLine.h"
#include "main/ExportCommands.h"
#include "main/OcrSheet.h"
#include "main/SelfTest.h"
#include "main/SelfTestAI.h"
#include "main/SelfTestAsk.h"
#include "main/SelfTestCoach.h"
#include "main/SelfTestMerge.h"
#include "main/SelfTestOcr.h"
#include "main/SelfTestReview.h"
#include "main/Services.h"
#include "main/SyncCommands.h"
#include "platform/linux/ocr/TesseractRecognizer.h"
#include "sync/PinnedTransport.h"
#include "sync/SyncService.h"
#include "widgets/IconArt.h"

#include <QTextStream>

#include <vector>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

using Form = Option::Form;

// Coroutines outlive the call that starts them, so each keeps its own copy of what it runs.
QCoro::Task<int> finished(int code)
{
    co_return code;
}

/// A routine that needs nothing and always ends with 0.
Option::Routine printing(void (*routine)(QTextStream &))
{
    return [routine](const OptionRun &run) {
        routine(run.out);
        return finished(0);
    };
}

Option::Routine exporting(ExportKind kind)
{
    return [kind](const OptionRun &run) { return exportData(kind, run); };
}

Option::Routine performing(ShortcutAction action)
{
    return [action](const OptionRun &run) {
        run.perform(action);
        return finished(0);
    };
}

QCoro::Task<int> renderIcon(const OptionRun &run)
{
    try {
        renderIconset(run.value);
    } catch (const Failure &failure) {
        run.out << u"生成图标失败："_s << failure.text() << Qt::endl;
        return finished(1);
    }
    return finished(0);
}

bool isOnATrialFolder()
{
    return !qEnvironmentVariableIsEmpty("NIMBRELLE_DATA_DIR");
}

// Elsewhere it only refuses, and so much as makes no folder.
QCoro::Task<int> studyStamp(const OptionRun &run)
{
    if (!isOnATrialFolder()) {
        run.out << u"要先设置 NIMBRELLE_DATA_DIR 指向一个临时文件夹（不碰真实设置）"_s << Qt::endl;
        return finished(1);
    }
    return finished(SelfTest::runStudyStamp(run.services.config(), run.services.paths(), run.out) ? 0 : 1);
}

QCoro::Task<int> review(const OptionRun &run)
{
    Services &services = run.services;
    SelfTest::runReview(services.words(), services.config().config(), services.clock().now(), run.out);
    return finished(0);
}

QCoro::Task<int> lookup(OptionRun run)
{
    co_await SelfTest::runLookup(run.services.makeAI(), run.out);
    co_return 0;
}

QCoro::Task<int> explain(OptionRun run)
{
    co_await SelfTest::runExplain(run.services.makeAI(), run.out);
    co_return 0;
}

QCoro::Task<int> addSpelling(OptionRun run)
{
    co_await SelfTest::addSpelling(run.value, run.services.makeAI(), run.services.words(), run.out);
    co_return 0;
}

QCoro::Task<int> ask(OptionRun run)
{
    const std::unique_ptr<AIClient> client = run.services.makeAI();
    co_await SelfTest::runAsk(*client, run.out);
    co_return 0;
}

QCoro::Task<int> ocr(OptionRun run)
{
    TesseractRecognizer recognizer;
    const bool isRight = co_await SelfTest::runOCR(recognizer, SelfTest::drawTextSheet(), run.out);
    co_return isRight ? 0 : 1;
}

QCoro::Task<int> merge(const OptionRun &run)
{
    return finished(SelfTest::runMerge(run.out) ? 0 : 1);
}

QCoro::Task<int> syncOnce(const OptionRun &run)
{
    return syncNow(&run.services.sync(), &run.services.words(), &run.out);
}

QCoro::Task<int> connectToServer(const OptionRun &run)
{
    return connectSync(run.value, &run.services.config(), &PinnedTransport::open, &run.out);
}

QCoro::Task<int> coach(const OptionRun &run)
{
    Services &services = run.services;
    const CoachFacts facts(services.words(), services.config(), services.log());
    SelfTest::runCoach(facts, services.config().config(), services.clock().now(), run.out);
    return finished(0);
}

QCoro::Task<int> coachAI(OptionRun run)
{
    Services &services = run.services;
    const Timestamp now = services.clock().now();
    const QString facts = CoachFacts(services.words(), services.config(), services.log()).build(now);
    const auto previous = services.coachHistory().briefingBefore(DayKey::string(now));
    const auto client = services.makeAI();
    co_await SelfTest::runCoachAI(facts, previous, *client, run.out);
    co_return 0;
}

QCoro::Task<int> growthArchive(const OptionRun &run)
{
    Services &services = run.services;
    try {
        const Timestamp now = services.clock().now();
        const GrowthSource source =
            readGrowthSource(services.paths(), services.log(), services.config().config(), now);
        const GrowthReport report = makeGrowthReport(source, now, QTimeZone::systemTimeZone());
        writeGrowthPage(run.value, growthPage(report), services.paths());
    } catch (const Failure &failure) {
        run.out << failure.text() << Qt::endl;
        return finished(1);
    }
    run.out << u"成长档案写好了："_s << run.value << Qt::endl;
    return finished(0);
}

std::vector<Option> makeTable()
{
    return {
        {.name = u"--render-icon"_s, .form = Form::value, .run = renderIcon, .needs = Option::Needs::drawing},
        {.name = u"--selftest-ocr"_s, .form = Form::flag, .run = ocr, .needs = Option::Needs::drawing},
        {.name = u"--selftest-review"_s, .form = Form::flag, .run = review},
        {.name = u"--selftest-spelling"_s, .form = Form::flag, .run = printing(SelfTest::runSpelling)},
        {.name = u"--selftest-menubar"_s, .form = Form::flag, .run = printing(SelfTest::runMenuBar)},
        {.name = u"--selftest-spellpractice"_s,
            .form = Form::flag,
            .run = printing(SelfTest::runSpellPractice)},
        {.name = u"--selftest-lookup"_s, .form = Form::flag, .run = lookup},
        {.name = u"--add-spelling"_s, .form = Form::value, .run = addSpelling, .writes = true},
        {.name = u"--selftest-config"_s, .form = Form::flag, .run = printing(SelfTest::runConfig)},
        {.name = u"--selftest-studystamp"_s,
            .form = Form::flag,
            .run = studyStamp,
            .writes = isOnATrialFolder()},
        {.name = u"--selftest-merge"_s, .form = Form::flag, .run = merge},
        {.name = u"--sync-now"_s, .form = Form::flag, .run = syncOnce, .writes = true},
        {.name = u"--sync-connect"_s,
            .form = Form::value,
            .run = connectToServer,
            .writes = true,
            .meaning = givenCode},
        {.name = u"--growth-archive"_s, .form = Form::value, .run = growthArchive},
        {.name = u"--selftest-fsrs"_s, .form = Form::flag, .run = printing(SelfTest::runFSRS)},
        {.name = u"--selftest-ask"_s, .form = Form::flag, .run = ask},
        {.name = u"--selftest-coach"_s, .form = Form::flag, .run = coach},
        {.name = u"--selftest-coach-ai"_s, .form = Form::flag, .run = coachAI},
        {.name = u"--selftest-explain"_s, .form = Form::flag, .run = explain},
        {.name = u"--export-csv"_s, .form = Form::value, .run = exporting(ExportKind::csv)},
        {.name = u"--export-anki"_s, .form = Form::value, .run = exporting(ExportKind::anki)},
        {.name = u"--export-anki-cloze"_s, .form = Form::value, .run = exporting(ExportKind::ankiCloze)},
        {.name = u"--export-backup"_s, .form = Form::value, .run = exporting(ExportKind::backup)},
        {.name = u"--check-backup"_s, .form = Form::value, .run = checkBackup},
        {.name = u"--import-backup"_s,
            .form = Form::value,
            .run = importBackup,
            .writes = true,
            .meaning = givenPath},
        {.name = u"--import-words"_s,
            .form = Form::value,
            .run = importWords,
            .writes = true,
            .meaning = givenPath},
        {.name = u"--look-up-selection"_s,
            .form = Form::flag,
            .run = performing(ShortcutAction::lookUpSelection),
            .needs = Option::Needs::program},
        {.name = u"--translate-region"_s,
            .form = Form::flag,
            .run = performing(ShortcutAction::translateRegion),
            .needs = Option::Needs::program},
    };
}

} // namespace

std::span<const Option> optionTable()
{
    static const std::vector<Option> table = makeTable();
    return table;
}

} // namespace nimbrelle
