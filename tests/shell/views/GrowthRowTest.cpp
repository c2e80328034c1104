#include "shell/views/GrowthRow.h"

#include "shell/GrowthGenerator.h"
#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/ViewStage.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

TEST(GrowthRow, InstallsRemovesAndTellsWhatWentWrong)
{
    const Notebook notebook;
    const AppPaths paths(notebook.directory.filePath(u"data"_s));
    const GrowthFolder folder(paths);
    const GrowthGenerator generator(paths, u"/usr/bin/nimbrelle"_s, notebook.clock);
    const Theme theme(1);
    GrowthRow group(theme, generator);
    ViewStage stage(group);
    ViewStage::show(group, theme, {472, 120});
    EXPECT_EQ(stage.text("toggleGrowthArchive"), u"安装成长档案"_s);
    EXPECT_FALSE(stage.shows("growthProblem"));
    stage.press("toggleGrowthArchive");
    EXPECT_TRUE(QFileInfo::exists(folder.script()));
    EXPECT_EQ(stage.text("toggleGrowthArchive"), u"移除成长档案"_s);
    EXPECT_TRUE(stage.text("growthNote").contains(folder.report()));
    stage.press("toggleGrowthArchive");
    EXPECT_EQ(stage.text("toggleGrowthArchive"), u"安装成长档案"_s);

    QDir(folder.path()).removeRecursively();
    QFile::link(notebook.directory.path(), folder.path());
    stage.press("toggleGrowthArchive");
    EXPECT_TRUE(stage.text("growthProblem").contains(folder.path()));
    EXPECT_EQ(stage.text("toggleGrowthArchive"), u"安装成长档案"_s);
}

} // namespace

} // namespace nimbrelle
