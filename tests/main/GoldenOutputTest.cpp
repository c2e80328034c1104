#include "frame/AtomicFile.h"
#include "main/SelfTest.h"
#include "main/SelfTestMerge.h"
#include "main/SelfTestReview.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <QTextStream>

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// What a mode prints, kept in a file of its own. A change that is meant is a new file, made by the mode.
struct Mode {
    const char *name;
    void (*run)(QTextStream &out);
};

void runMerge(QTextStream &out)
{
    EXPECT_TRUE(SelfTest::runMerge(out));
}

/// A notebook of three words, one of which is wanted.
void runReview(QTextStream &out)
{
    Notebook notebook;
    notebook.save("first");
    notebook.store.setWantToLearn(notebook.save("wanted"), true);
    notebook.save("last");
    SelfTest::runReview(notebook.store, notebook.config.config(), notebook.clock.now(), out);
}

class GoldenOutput : public testing::TestWithParam<Mode> { };

TEST_P(GoldenOutput, IsWhatItAlwaysWas)
{
    const auto golden =
        readFile(QStringLiteral(NIMBRELLE_GOLDEN) + u"/%1.txt"_s.arg(QLatin1StringView(GetParam().name)));
    ASSERT_TRUE(golden);
    QString printed;
    QTextStream out(&printed);
    GetParam().run(out);
    out.flush();
    EXPECT_EQ(printed, QString::fromUtf8(*golden));
}

INSTANTIATE_TEST_SUITE_P(, GoldenOutput,
    testing::Values(Mode{"fsrs", SelfTest::runFSRS}, Mode{"spelling", SelfTest::runSpelling},
        Mode{"spellpractice", SelfTest::runSpellPractice}, Mode{"menubar", SelfTest::runMenuBar},
        Mode{"config", SelfTest::runConfig}, Mode{"merge", runMerge}, Mode{"review", runReview}),
    [](const auto &mode) { return std::string(mode.param.name); });

} // namespace

} // namespace nimbrelle
