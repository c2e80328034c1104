#include "settings/ExcludedApplications.h"

#include "support/FakeDesktop.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

using Row = ExcludedApplications::Row;

TEST(ExcludedApplications, AreNamedAsTheyAreInstalled)
{
    Notebook notebook;
    FakeInstalledApplications installed;
    installed.applications = {{u"files"_s, u"Bulk Rename"_s, {}, u"thunar"_s},
        {u"files"_s, u"Nautilus"_s, {}, u"nautilus"_s}, {u"files"_s, u"Thunar"_s, {}, u"thunar"_s},
        {u"Mousepad"_s, u"文本编辑器"_s, {}}};
    ExcludedApplications excluded(notebook.config, installed);
    notebook.configure([](AppConfig &config) {
        config.excludedBundleIDs = QStringList{u"gone"_s, u"files"_s};
    });
    EXPECT_THAT(excluded.rows(), ElementsAre(Row{u"gone"_s, u"gone"_s}, Row{u"files"_s, u"files"_s}))
        << "nobody has looked yet";
    excluded.refresh();
    EXPECT_THAT(
        excluded.rows(), ElementsAre(Row{u"gone"_s, u"gone"_s}, Row{u"files"_s, u"Thunar、Nautilus"_s}));
    EXPECT_THAT(excluded.candidates(), ElementsAre(installed.applications[3]));
    excluded.exclude(u"Mousepad"_s);
    excluded.exclude(u"Mousepad"_s);
    excluded.remove(u"gone"_s);
    EXPECT_THAT(notebook.config.config().excludedBundleIDs, ElementsAre(u"files"_s, u"Mousepad"_s));
    EXPECT_TRUE(excluded.candidates().isEmpty());
}

} // namespace
