#include "shell/StatusMenu.h"

#include "support/Printers.h"
#include "support/Words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

/// A line as one reads it: tick, indent, title, then symbol and key.
QString lineOf(const MenuEntry &entry)
{
    if (entry.kind == MenuEntry::Kind::separator)
        return u"---"_s;
    QString line = QString(entry.indent, u'>') + entry.title;
    if (entry.kind == MenuEntry::Kind::check)
        line.prepend(entry.isChecked ? u"[x] "_s : u"[ ] "_s);
    if (!entry.symbol.isEmpty())
        line += u" <"_s + entry.symbol + u'>';
    return entry.key.isEmpty() ? line : line + u" /"_s + entry.key;
}

QStringList linesOf(const StatusMenu::State &state)
{
    QStringList lines;
    for (const MenuEntry &entry : StatusMenu::entries(state))
        lines.append(lineOf(entry));
    return lines;
}

WordEntry deprecate()
{
    WordEntry word = wordNamed(u"deprecate"_s);
    word.meaningZh = u"弃用 <旧>"_s;
    word.examples = {exampleOf(u"This API is Deprecated & gone."_s)};
    return word;
}

Application program(const QString &bundleID, const QString &name)
{
    Application application;
    application.bundleID = bundleID;
    application.name = name;
    return application;
}

StatusMenu::State fullState()
{
    StatusMenu::State state;
    state.word = deprecate();
    state.config.dwellLookup = false;
    state.dueCount = 12;
    state.learningCount = 24;
    state.spellPracticeCount = 6;
    state.wordCount = 186;
    state.journeyInstalled = true;
    state.launchesAtLogin = true;
    state.front = program(u"firefox"_s, u"Firefox"_s);
    state.ownBundleID = u"nimbrelle"_s;
    return state;
}

TEST(StatusMenu, ShowsEverythingInItsOrder)
{
    EXPECT_THAT(linesOf(fullState()),
        ElementsAre(u"deprecate  弃用 <旧> <speaker.wave.2>"_s, u"换一个 <arrow.triangle.2.circlepath>"_s,
            u"---"_s, u"开始复习（12 题） <rectangle.stack> /r"_s, u">在学 24/30"_s,
            u"拼写练习（6 个常拼） <character.cursor.ibeam>"_s, u"AI 教练 <person.wave.2>"_s, u"---"_s,
            u"生词本（186 个）"_s, u"查词 <magnifyingglass> /n"_s, u"成长档案 <book.pages>"_s, u"---"_s,
            u"[x] 划选英文时自动弹出"_s, u"[ ] 鼠标停在英文上自动查词"_s, u"[x] ⌥ Option（Alt） 指着识别"_s,
            u"[x] 连按两下 ⌘ Command（Super） 框选翻译"_s, u"[x] 菜单栏显示在学的词"_s,
            u"在「Firefox」中停用"_s, u"---"_s, u"还没有打开辅助功能权限 <exclamationmark.triangle>"_s,
            u"---"_s, u"[x] 开机自动启动"_s, u"设置… /,"_s, u"退出 Nimbrelle /q"_s));
}

TEST(StatusMenu, LeavesOutWhatThereIsNot)
{
    StatusMenu::State state;
    state.isAccessible = true;
    state.config.hoverKey = ModifierKey::shift;
    state.config.regionKey = ModifierKey::control;
    EXPECT_THAT(linesOf(state),
        ElementsAre(u"现在没有要复习的 <checkmark.circle> /r"_s, u">在学 0/30"_s,
            u"AI 教练 <person.wave.2>"_s, u"---"_s, u"生词本（0 个）"_s, u"查词 <magnifyingglass> /n"_s,
            u"---"_s, u"[x] 划选英文时自动弹出"_s, u"[x] 鼠标停在英文上自动查词"_s, u"[x] ⇧ Shift 指着识别"_s,
            u"[x] 连按两下 ⌃ Control（Ctrl） 框选翻译"_s, u"[x] 菜单栏显示在学的词"_s, u"---"_s,
            u"[ ] 开机自动启动"_s, u"设置… /,"_s, u"退出 Nimbrelle /q"_s));
}

TEST(StatusMenu, HandsOnEveryWindowAndTheWayOutWhereNoBarShowsIt)
{
    const auto titles = [](const StatusMenu::State &state) {
        QStringList offered;
        for (const MenuEntry &entry : StatusMenu::offers(StatusMenu::entries(state)))
            offered.append(entry.title);
        return offered;
    };
    EXPECT_THAT(titles(fullState()),
        ElementsAre(u"开始复习（12 题）"_s, u"拼写练习（6 个常拼）"_s, u"AI 教练"_s, u"生词本（186 个）"_s,
            u"查词"_s, u"成长档案"_s, u"退出 Nimbrelle"_s));
    EXPECT_THAT(titles({}),
        ElementsAre(
            u"现在没有要复习的"_s, u"AI 教练"_s, u"生词本（0 个）"_s, u"查词"_s, u"退出 Nimbrelle"_s));
}

TEST(StatusMenu, OffersToExcludeTheProgramInFrontButNotItself)
{
    StatusMenu::State state = fullState();
    state.config.excludedBundleIDs.append(u"firefox"_s);
    const QList<MenuEntry> menu = StatusMenu::entries(state);
    const auto restore = std::ranges::find(menu, u"在「Firefox」中恢复"_s, &MenuEntry::title);
    ASSERT_NE(restore, menu.end());
    EXPECT_EQ(StatusMenu::actionOf(*restore), StatusMenu::Action::toggleExcluded);
    EXPECT_EQ(restore->payload, u"firefox"_s);

    state.front = program(u"nimbrelle"_s, u"Nimbrelle"_s);
    EXPECT_THAT(linesOf(state), Not(Contains(u"在「Nimbrelle」中停用"_s)));
    state.front = Application();
    EXPECT_EQ(linesOf(state).filter(u"在「"_s), QStringList());
    state.front->bundleID = u"xterm"_s;
    EXPECT_THAT(linesOf(state), Contains(u"在「xterm」中停用"_s));
}

TEST(StatusMenu, SetsTheWordApartFromItsMeaning)
{
    const MenuEntry line = StatusMenu::entries(fullState()).first();
    using enum MenuEntry::Emphasis;
    EXPECT_EQ(line.runs,
        (QList<MenuEntry::Run>{{u"deprecate"_s, strong}, {u"  "_s, plain}, {u"弃用 <旧>"_s, secondary}}));
    EXPECT_EQ(line.toolTip, u"朗读"_s);
    EXPECT_EQ(StatusMenu::actionOf(line), StatusMenu::Action::speakMenuBarWord);
}

TEST(StatusMenu, ShortensALongTitleAndShowsTheSentenceInTheToolTip)
{
    EXPECT_EQ(StatusMenu::title(std::nullopt), QString());
    EXPECT_EQ(StatusMenu::title(wordNamed(u"characterisation"_s)), u"characterisation"_s);
    EXPECT_EQ(StatusMenu::title(wordNamed(u"characterisations"_s)), u"characterisatio…"_s);
    EXPECT_EQ(StatusMenu::toolTip(deprecate()),
        (StatusMenu::ToolTip{
            u"deprecate"_s, u"弃用 &lt;旧&gt;\nThis API is <b>Deprecated</b> &amp; gone."_s}));
    EXPECT_EQ(StatusMenu::toolTip(wordNamed(u"ngl"_s)), (StatusMenu::ToolTip{u"ngl"_s, {}}));
    EXPECT_EQ(StatusMenu::toolTip(std::nullopt), (StatusMenu::ToolTip{u"Nimbrelle"_s, {}}));
}

} // namespace
