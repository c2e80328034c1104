#include "settings/SettingsText.h"

#include "settings/StudySteps.h"
#include "settings/UnwrittenText.h"
#include "settings/Version.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

const StudyStep &stepOf(const char *name)
{
    return *std::ranges::find(studySteps(), QByteArrayView(name), &StudyStep::name);
}

TEST(StudySteps, StopAtTheEndsAndNeverLandOnThem)
{
    struct Case {
        const char *name;
        qint64 stored;
        std::optional<qint64> down, up;
    };
    const Case cases[]{{"learningSlots", 30, 20, 40}, {"learningSlots", 150, 140, {}},
        {"learningSlots", 10, {}, 20}, {"dailyNewLimit", 30, 29, {}}, {"dailyNewLimit", 1, {}, 2},
        {"sessionSize", 50, 45, {}}, {"sessionSize", 7, {}, 12}, {"graduateDays", 30, 23, 37},
        {"graduateDays", 107, 100, 114}, {"graduateDays", 114, 107, {}}, {"graduateDays", 9, {}, 16},
        {"leechThreshold", 10, 9, {}}, {"dormantDays", 7, {}, 14},
        // Stored by another program, beyond the ends.
        {"dormantDays", 500, 120, {}}, {"dormantDays", -4, {}, 7}};
    for (const Case &c : cases) {
        AppConfig config;
        config.*stepOf(c.name).value = c.stored;
        EXPECT_EQ(stepOf(c.name).down(config), c.down) << c.name << ' ' << c.stored;
        EXPECT_EQ(stepOf(c.name).up(config), c.up) << c.name << ' ' << c.stored;
    }
}

TEST(StudySteps, SayTheirValues)
{
    QStringList labels;
    for (const StudyStep &step : studySteps())
        labels.append(step.label(AppConfig()));
    EXPECT_EQ(labels,
        (QStringList{u"「在学」名额：30 个"_s, u"每天最多补进 8 个新词"_s, u"每轮最多 15 题"_s,
            u"记牢 30 天以上算掌握"_s, u"错 4 次算难啃的词"_s, u"「见过」的词 30 天没再遇到就沉睡"_s}));
}

TEST(SettingsText, WarnsOfKeysThatCollide)
{
    struct Case {
        ModifierKey hover, region;
        bool hoverOn, regionOn, isTaken, isTwice;
    };
    using enum ModifierKey;
    const Case cases[]{{option, command, true, true, false, false}, {option, option, true, true, true, true},
        {option, option, false, true, true, false}, {option, option, true, false, false, false},
        {shift, shift, true, true, false, true}, {control, option, true, true, true, false}};
    for (const Case &c : cases) {
        AppConfig config;
        config.hoverKey = c.hover;
        config.regionKey = c.region;
        config.optionHoverOCR = c.hoverOn;
        config.optionRegionTranslate = c.regionOn;
        EXPECT_EQ(SettingsText::isKeyTakenElsewhere(config), c.isTaken);
        EXPECT_EQ(SettingsText::isKeyUsedTwice(config), c.isTwice);
    }
}

TEST(SettingsText, SaysWhatAnAddressLacks)
{
    for (const QString &good :
        {AppConfig().baseURL, u" http://127.0.0.1:8080/v1/ "_s, u"HTTPS://a"_s, u" "_s})
        EXPECT_EQ(SettingsText::addressHint(good), QString()) << good.toStdString();
    for (const QString &bad : {u"api.example.com"_s, u"https://"_s, u"localhost:8080"_s, u"https:/a/v1"_s,
             u"http://a b"_s, u"ftp://a"_s})
        EXPECT_TRUE(SettingsText::addressHint(bad).endsWith(u"例如 "_s + AppConfig().baseURL))
            << bad.toStdString();
}

TEST(SettingsText, NamesWhatIsTrueOfThisMachine)
{
    EXPECT_EQ(SettingsText::keyNote(u"/home/li/.local/share/Nimbrelle/config.json"_s, u"/home/li"_s),
        u"API key 只保存在这台电脑上：~/.local/share/Nimbrelle/config.json"_s);
    EXPECT_EQ(SettingsText::keyNote(u"/home/lin/config.json"_s, u"/home/li"_s),
        u"API key 只保存在这台电脑上：/home/lin/config.json"_s);
    EXPECT_EQ(SettingsText::versionLine(u"1.2.0"_s, u"57"_s), u"1.2.0（57）"_s);
    EXPECT_EQ(SettingsText::versionLine({}, {}), u"?（?）"_s);
    EXPECT_FALSE(Version::number().isEmpty());
    EXPECT_EQ(keyboardLabel(ModifierKey::option), u"⌥ Option（Alt）"_s);
    EXPECT_EQ(keyboardLabel(ModifierKey::command), u"⌘ Command（Super）"_s);
    EXPECT_EQ(keyboardLabel(ModifierKey::control), u"⌃ Control（Ctrl）"_s);
    EXPECT_EQ(SettingsText::keptFilesNote({}), QString());
    EXPECT_EQ(SettingsText::keptFilesNote({u"a"_s, u"b"_s, u"c"_s, u"d"_s}),
        u"有数据文件读不出来，已经原样留在数据文件夹里，不再需要时可以删掉：b、c、d 等 4 个"_s);
    EXPECT_EQ(SettingsText::dwellLabel(0.5), u"0.5 秒"_s);
    EXPECT_EQ(SettingsText::dwellLabel(2), u"2.0 秒"_s);
}

TEST(UnwrittenText, TellsWhichFilesWhereAndWhy)
{
    const auto file = [](const char *name, int error) {
        return UnwrittenFile{.path = u"/home/li/data/"_s + QString::fromLatin1(name), .error = error};
    };
    const QString home = u"/home/li"_s;
    EXPECT_EQ(UnwrittenText::line({}, home), QString());
    EXPECT_EQ(UnwrittenText::note({}, home), QString());
    EXPECT_EQ(UnwrittenText::note({file("words.json", ENOSPC)}, home),
        u"写不进生词本（~/data/words.json）：磁盘满了。写成之前，新的改动只在内存里。"_s);
    EXPECT_EQ(UnwrittenText::note({file("backups", ENOSPC)}, home),
        u"写不进自动备份（~/data/backups）：磁盘满了。同步照常，只是今天还没有备份。"_s);
    EXPECT_EQ(UnwrittenText::line(
                  {file("words.json", EROFS), file("coach.json", EACCES), file("learning-log.jsonl", EROFS)},
                  u"/home/l"_s),
        u"写不进生词本、学习日志（/home/li/data）：磁盘是只读的；写不进教练对话（/home/li/data/coach.json）：没有写入的权限"_s);
    EXPECT_EQ(
        UnwrittenText::line({file("words.json", EIO), file("notes.json", EIO), file("sync-state.json", EIO),
                                file("sync-known.json", EIO), file("deleted.json", EIO)},
            home),
        u"写不进生词本、句子笔记、同步记录等 4 项（~/data）：磁盘读写出错"_s);
    EXPECT_EQ(UnwrittenText::line({file("other.json", ELOOP)}, home),
        u"写不进other.json（~/data/other.json）：系统说 Too many levels of symbolic links"_s);
}

} // namespace
