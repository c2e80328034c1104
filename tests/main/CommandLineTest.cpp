#include "main/CommandLine.h"

#include "main/Services.h"
#include "support/Printers.h"

#include <QTextStream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

QString chosen(const QStringList &arguments)
{
    const auto option = chooseOption(optionTable(), QStringList{u"nimbrelle"_s} + arguments);
    return option ? option->option->name + u'=' + option->value : QString();
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

TEST(CommandLine, LetsTheFirstOfTheTableWin)
{
    const std::pair<const char *, const char *> cases[]{
        {"", ""},
        {"unknown --selftest", ""},
        {"--sync-now --selftest-merge", "--selftest-merge="},
        {"--selftest-coach-ai", "--selftest-coach-ai="},
        {"--selftest-coach-ai --selftest-coach", "--selftest-coach="},
        {"--render-icon", ""},
        {"--sync-now --render-icon", "--sync-now="},
        {"--render-icon --sync-now", "--render-icon=--sync-now"},
        {"--add-spelling --selftest-config", "--add-spelling=--selftest-config"},
        {"--sync-connect --add-spelling", "--sync-connect=--add-spelling"},
        {"--add-spelling --selftest-ocr", "--selftest-ocr="},
        {"--add-spelling a --add-spelling b", "--add-spelling=a"},
        {"--translate-region --look-up-selection", "--look-up-selection="},
        {"x --selftest-fsrs=1 --selftest-fsrs -h", "--selftest-fsrs="},
    };
    for (const auto &[arguments, expected] : cases)
        EXPECT_EQ(chosen(words(arguments)), QString::fromLatin1(expected)) << arguments;
    EXPECT_EQ(chosen({u"--add-spelling"_s, QString()}), u"--add-spelling="_s) << "an empty text is a value";
}

QString writingOptions()
{
    QStringList names;
    for (const Option &option : optionTable()) {
        if (option.writes)
            names.append(option.name);
    }
    return names.join(u' ');
}

TEST(CommandLine, TheRunningProgramDoesWhatWritesAndNothingElse)
{
    EXPECT_EQ(writingOptions(), u"--add-spelling --sync-now --sync-connect --import-backup --import-words"_s);
    const auto routine = [](OptionRun run) -> QCoro::Task<int> {
        run.out << run.value;
        co_return 5;
    };
    std::optional<ShortcutAction> performed;
    const Option table[]{{.name = u"--writes"_s, .run = routine, .writes = true},
        {.name = u"--reads"_s, .run = routine},
        *std::ranges::find(optionTable(), u"--look-up-selection"_s, &Option::name),
        *std::ranges::find(optionTable(), u"--translate-region"_s, &Option::name)};
    const auto given = [&table, &performed](const QString &name) {
        QString printed;
        QTextStream out(&printed);
        int code = -1;
        const auto flow = [&]() -> QCoro::Task<> {
            code = co_await runGiven(table, name,
                {.services = Services::shared(),
                    .out = out,
                    .value = u"v"_s,
                    .perform = [&](ShortcutAction action) { performed = action; }});
        };
        const auto task = flow();
        return QString::number(code) + u' ' + printed;
    };
    EXPECT_EQ(given(u"--writes"_s), u"5 v"_s);
    EXPECT_EQ(given(u"--reads"_s), u"1 正在运行的 Nimbrelle 不认识这个命令：--reads\n"_s);
    EXPECT_EQ(performed, std::nullopt);
    EXPECT_EQ(given(u"--look-up-selection"_s), u"0 "_s);
    EXPECT_EQ(performed, ShortcutAction::lookUpSelection);
    EXPECT_EQ(given(u"--translate-region"_s), u"0 "_s);
    EXPECT_EQ(performed, ShortcutAction::translateRegion);
}

} // namespace
