#include "main/CommandLine.h"

#include "support/Printers.h"

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
        {"x --selftest-fsrs=1 --selftest-fsrs -h", "--selftest-fsrs="},
    };
    for (const auto &[arguments, expected] : cases)
        EXPECT_EQ(chosen(words(arguments)), QString::fromLatin1(expected)) << arguments;
    EXPECT_EQ(chosen({u"--add-spelling"_s, QString()}), u"--add-spelling="_s) << "an empty text is a value";
}

} // namespace
