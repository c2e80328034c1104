#include "settings/ListedApplications.h"

#include "support/FakeDesktop.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

using Row = ListedApplications::Row;

TEST(ListedApplications, AreNamedAsTheyAreInstalled)
{
    Notebook notebook;
    FakeInstalledApplications installed;
    installed.applications = {{u"files"_s, u"Bulk Rename"_s, {}, u"thunar"_s},
        {u"files"_s, u"Nautilus"_s, {}, u"nautilus"_s}, {u"files"_s, u"Thunar"_s, {}, u"thunar"_s},
        {u"Mousepad"_s, u"文本编辑器"_s, {}}};
    constexpr ListedApplications::List list = &AppConfig::excludedBundleIDs;
    ListedApplications applications(notebook.config, installed);
    notebook.configure([](AppConfig &config) {
        config.excludedBundleIDs = QStringList{u"gone"_s, u"files"_s};
    });
    EXPECT_THAT(applications.rows(list), ElementsAre(Row{u"gone"_s, u"gone"_s}, Row{u"files"_s, u"files"_s}))
        << "nobody has looked yet";
    applications.refresh();
    EXPECT_THAT(applications.rows(list),
        ElementsAre(Row{u"gone"_s, u"gone"_s}, Row{u"files"_s, u"Thunar、Nautilus"_s}));
    EXPECT_THAT(applications.candidates(list), ElementsAre(installed.applications[3]));
    applications.add(list, u"Mousepad"_s);
    applications.add(list, u"Mousepad"_s);
    applications.remove(list, u"gone"_s);
    EXPECT_THAT(notebook.config.config().excludedBundleIDs, ElementsAre(u"files"_s, u"Mousepad"_s));
    EXPECT_TRUE(applications.candidates(list).isEmpty());
    applications.add(&AppConfig::noCopyBundleIDs, u"Mousepad"_s);
    EXPECT_THAT(notebook.config.config().noCopyBundleIDs, ElementsAre(u"Mousepad"_s));
    EXPECT_EQ(notebook.config.config().excludedBundleIDs.size(), 2);
}

} // namespace
