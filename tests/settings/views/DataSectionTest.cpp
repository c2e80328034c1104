#include "settings/views/SettingsStage.h"

#include <QFileDialog>

#include <gmock/gmock.h>

// The last section: what the learner takes along, and what comes back.
namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class DataSectionTest : public testing::Test, protected SettingsStage {
protected:
    DataSectionTest()
    {
        QDir(notebook.directory.path()).mkdir(u"a"_s);
        show();
    }

    QString path(const QString &name) const { return notebook.directory.filePath(u"a/"_s + name); }

    /// The desktop's dialog, as it stands open.
    QFileDialog *dialog() const { return view.window()->findChild<QFileDialog *>(u"fileQuestion"_s); }
    void choose(const QString &file)
    {
        emit dialog()->fileSelected(file);
        dialog()->close();
        settle();
    }
    QString message() const { return all("dataMessage").isEmpty() ? QString() : text("dataMessage"); }
};

} // namespace

TEST_F(DataSectionTest, ExportsToTheChosenFile)
{
    notebook.save("run");
    const std::pair<const char *, QString> exports[]{{"exportCsv", u"nimbrelle-2026-03-01.csv"_s},
        {"exportAnki", u"nimbrelle-anki-2026-03-01.txt"_s},
        {"exportAnkiCloze", u"nimbrelle-anki-填空-2026-03-01.txt"_s},
        {"exportBackup", u"nimbrelle-2026-03-01.zip"_s}};
    for (const auto &[button, name] : exports) {
        press(button);
        ASSERT_NE(dialog(), nullptr) << button;
        EXPECT_EQ(QFileInfo(dialog()->selectedFiles().value(0)).fileName(), name);
        EXPECT_EQ(dialog()->acceptMode(), QFileDialog::AcceptSave);
        choose(path(name));
        EXPECT_TRUE(QFileInfo::exists(path(name))) << button;
        EXPECT_TRUE(message().startsWith(u"已导出"_s)) << message().toStdString();
    }
    press("exportCsv");
    choose(path(u"gone/x.csv"_s));
    EXPECT_TRUE(message().endsWith(u"：没有这个文件夹"_s)) << message().toStdString();
    EXPECT_TRUE(isEnabled("exportCsv"));
    EXPECT_EQ(at("dataResult").findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).size(), 1)
        << "of earlier messages nothing is left";
}

TEST_F(DataSectionTest, ABackupIsToldBeforeItIsMerged)
{
    notebook.save("run");
    const QString backup = path(u"x.zip"_s);
    exchange.exportTo(ExportKind::backup, backup);
    notebook.fill({});
    press("importBackup");
    EXPECT_EQ(dialog()->acceptMode(), QFileDialog::AcceptOpen);
    choose(backup);
    EXPECT_TRUE(text("backupPlan").contains(u"新增 1 个词"_s));
    EXPECT_TRUE(notebook.store.entries().isEmpty());
    press("dropBackup");
    EXPECT_FALSE(shows("backupPlan"));
    exchange.bringBack();
    EXPECT_TRUE(notebook.store.entries().isEmpty()) << "what was dropped is gone";

    exchange.readBackup(backup);
    press("bringBack");
    EXPECT_FALSE(shows("bringBack"));
    EXPECT_EQ(notebook.word("run").headword, u"run"_s);
    EXPECT_EQ(message(), u"已导入备份：新增 1 个词，补全 0 个"_s);
    exchange.readBackup(backup);
    settle();
    EXPECT_TRUE(shows("backupPlan"));
    EXPECT_FALSE(shows("bringBack")) << "there is nothing to do";
    const QStringList kept = QDir(notebook.paths.backups).entryList(QDir::Files);
    notebook.clock.advance(std::chrono::minutes(1));
    exchange.bringBack();
    EXPECT_EQ(message(), u"这里什么都不缺，没有改动"_s);
    EXPECT_EQ(QDir(notebook.paths.backups).entryList(QDir::Files), kept) << "and so nothing to keep";
    exchange.readBackup(path(u"none.zip"_s));
    settle();
    EXPECT_FALSE(shows("backupPlan"));
    EXPECT_EQ(message(), u"找不到文件 "_s + path(u"none.zip"_s));
}

TEST_F(DataSectionTest, ABackupThatWasKeptIsListedAndComesBackAsAnyOther)
{
    EXPECT_FALSE(shows("keptBackup"));
    notebook.save("run");
    backups.beforeSync();
    settle();
    EXPECT_EQ(text("keptBackup"), u"3 月 1 日 16:30 · 1 个词 · 同步前"_s);
    notebook.fill({}); // as if the file was lost
    notebook.clock.advance(std::chrono::minutes(1));
    press("restoreBackup");
    EXPECT_TRUE(text("backupPlan").contains(u"新增 1 个词"_s));
    press("bringBack");
    EXPECT_EQ(notebook.word("run").headword, u"run"_s);
    EXPECT_THAT(texts("keptBackup"),
        ElementsAre(u"3 月 1 日 16:31 · 0 个词 · 导入前"_s, u"3 月 1 日 16:30 · 1 个词 · 同步前"_s));
    EXPECT_TRUE(isEnabled("restoreBackup"));

    const QString backup = path(u"x.zip"_s);
    exchange.exportTo(ExportKind::backup, backup);
    notebook.fill({});
    QDir(notebook.paths.backups).removeRecursively();
    ASSERT_TRUE(replaceFile(notebook.paths.backups, "in the way"));
    exchange.readBackup(backup);
    press("bringBack");
    EXPECT_TRUE(message().startsWith(u"没有导入：要先留一份备份"_s)) << message().toStdString();
    EXPECT_TRUE(notebook.store.entries().isEmpty());
}

TEST_F(DataSectionTest, WhatIsLearnedDuringAMergeStays)
{
    notebook.save("run");
    const QString backup = path(u"x.zip"_s);
    exchange.exportTo(ExportKind::backup, backup);
    notebook.fill({});
    exchange.readBackup(backup);
    background.meanwhile = [this] {
        EXPECT_TRUE(exchange.isBusy());
        notebook.save("walk");
        notebook.log.add(LogKind::glance, u"walk"_s);
    };
    exchange.bringBack();
    EXPECT_EQ(notebook.store.entries().size(), 2);
    EXPECT_TRUE(notebook.events().contains(u"glance walk"_s));
    notebook.fill({});
    exchange.readBackup(backup);
    background.pass = 1; // the merge that tells whether a backup is needed
    background.meanwhile = [this] { notebook.log.add(LogKind::glance, u"run"_s); };
    exchange.bringBack();
    EXPECT_TRUE(notebook.events().contains(u"glance run"_s));
}

TEST_F(DataSectionTest, AListOfWordsIsLookedUpAndCanBePausedAndGivenUp)
{
    EXPECT_FALSE(shows("wordProgress") || shows("pauseWords") || shows("wordStatus"));
    ASSERT_TRUE(replaceFile(path(u"list.txt"_s), "run\nhop\nfly\n"));
    press("importWords");
    choose(path(u"list.txt"_s));
    EXPECT_EQ(message(), u"3 个词等着查"_s);
    ai.reply(LookupResult{.explanation = Notebook::explained("run")});
    settle();
    EXPECT_EQ(text("wordStatus"), u"正在查 2 / 3：hop"_s);
    EXPECT_TRUE(shows("wordProgress"));
    press("pauseWords");
    EXPECT_EQ(text("wordStatus"), u"已暂停，还有 2 个词没查"_s);
    EXPECT_EQ(text("pauseWords"), u"继续"_s);
    theme.setScheme(Theme::Scheme::dark);
    settle();
    EXPECT_EQ(text("wordStatus"), u"已暂停，还有 2 个词没查"_s) << "the page was made anew";
    press("pauseWords");
    EXPECT_EQ(text("pauseWords"), u"暂停"_s);
    press("cancelWords");
    EXPECT_FALSE(shows("wordProgress") || shows("pauseWords") || shows("cancelWords"));
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(notebook.store.entries().size(), 1);
}

} // namespace nimbrelle
