#include "shell/StatusMenu.h"

#include "shell/MenuBarText.h"

namespace nimbrelle::StatusMenu {

using namespace Qt::StringLiterals;

namespace {

MenuEntry separator()
{
    return {.kind = MenuEntry::Kind::separator};
}

MenuEntry item(Action action, const QString &title, const QString &symbol = {}, const QString &key = {})
{
    return {.title = title, .symbol = symbol, .key = key, .action = static_cast<int>(action)};
}

MenuEntry check(Action action, const QString &title, bool isChecked)
{
    return {.kind = MenuEntry::Kind::check,
        .title = title,
        .isChecked = isChecked,
        .action = static_cast<int>(action)};
}

MenuEntry wordLine(const WordEntry &word)
{
    MenuEntry line =
        item(Action::speakMenuBarWord, word.headword + u"  "_s + word.meaningZh, u"speaker.wave.2"_s);
    line.runs = {{word.headword, MenuEntry::Emphasis::strong}, {u"  "_s, MenuEntry::Emphasis::plain},
        {word.meaningZh, MenuEntry::Emphasis::secondary}};
    line.toolTip = u"朗读"_s;
    return line;
}

QList<MenuEntry> wordBlock(const WordEntry &word)
{
    return {wordLine(word), item(Action::nextMenuBarWord, u"换一个"_s, u"arrow.triangle.2.circlepath"_s),
        separator()};
}

MenuEntry reviewItem(qint64 dueCount)
{
    if (dueCount > 0)
        return item(Action::showReview, u"开始复习（%1 题）"_s.arg(dueCount), u"rectangle.stack"_s, u"r"_s);
    return item(Action::showReview, u"现在没有要复习的"_s, u"checkmark.circle"_s, u"r"_s);
}

QList<MenuEntry> learningBlock(const State &state)
{
    MenuEntry learning =
        item(Action::showWords, u"在学 %1/%2"_s.arg(state.learningCount).arg(state.config.learningSlots));
    learning.indent = 1;
    QList<MenuEntry> block{reviewItem(state.dueCount), learning};
    if (state.spellPracticeCount >= 1)
        block.append(item(Action::showSpelling, u"拼写练习（%1 个常拼）"_s.arg(state.spellPracticeCount),
            u"character.cursor.ibeam"_s));
    block.append(item(Action::showCoach, u"AI 教练"_s, u"person.wave.2"_s));
    return block;
}

MenuEntry journeyItem(bool isUpdating)
{
    MenuEntry entry =
        item(Action::showJourney, isUpdating ? u"成长档案（正在生成…）"_s : u"成长档案"_s, u"book.pages"_s);
    entry.isEnabled = !isUpdating;
    return entry;
}

QList<MenuEntry> notebookBlock(const State &state)
{
    QList<MenuEntry> block{item(Action::showWords, u"生词本（%1 个）"_s.arg(state.wordCount)),
        item(Action::showAddWord, u"查词"_s, u"magnifyingglass"_s, u"n"_s)};
    if (state.journeyInstalled)
        block.append(journeyItem(state.isJourneyUpdating));
    return block;
}

QList<MenuEntry> toggles(const AppConfig &config)
{
    return {
        check(Action::toggleAutoPopup, u"划选英文时自动弹出"_s, config.autoPopupOnSelect),
        check(Action::toggleDwell, u"鼠标停在英文上自动查词"_s, config.dwellLookup),
        check(
            Action::toggleHover, u"%1 指着识别"_s.arg(keyboardLabel(config.hoverKey)), config.optionHoverOCR),
        check(Action::toggleRegion, u"连按两下 %1 框选翻译"_s.arg(keyboardLabel(config.regionKey)),
            config.optionRegionTranslate),
        check(Action::toggleMenuBarWord, u"菜单栏显示在学的词"_s, config.menuBarWord),
    };
}

std::optional<MenuEntry> excludedItem(const State &state)
{
    if (!state.front || !state.front->bundleID || state.front->bundleID == state.ownBundleID)
        return std::nullopt;
    const QString identifier = *state.front->bundleID;
    const bool isExcluded = state.config.excludes(identifier);
    const QString name = state.front->name.value_or(identifier);
    MenuEntry entry =
        item(Action::toggleExcluded, (isExcluded ? u"在「%1」中恢复"_s : u"在「%1」中停用"_s).arg(name));
    entry.payload = identifier;
    return entry;
}

QList<MenuEntry> programBlock(bool launchesAtLogin)
{
    return {check(Action::toggleLaunchAtLogin, u"开机自动启动"_s, launchesAtLogin),
        item(Action::showSettings, u"设置…"_s, {}, u","_s),
        item(Action::quit, u"退出 Nimbrelle"_s, {}, u"q"_s)};
}

QString boldened(const MenuBarText::SentenceTitle &sentence)
{
    const TextRange bold = sentence.bold.value_or(TextRange{sentence.text.size(), 0});
    const QString marked = bold.length > 0
        ? u"<b>%1</b>"_s.arg(sentence.text.mid(bold.start, bold.length).toHtmlEscaped())
        : QString();
    const QString before = sentence.text.left(bold.start).toHtmlEscaped();
    return before + marked + sentence.text.mid(bold.start + bold.length).toHtmlEscaped();
}

} // namespace

QList<MenuEntry> entries(const State &state)
{
    QList<MenuEntry> menu;
    if (!state.unwritten.isEmpty())
        menu += {item(Action::showSettings, state.unwritten, u"exclamationmark.triangle"_s), separator()};
    if (state.word)
        menu += wordBlock(*state.word);
    menu += learningBlock(state);
    menu += separator();
    menu += notebookBlock(state);
    menu += separator();
    menu += toggles(state.config);
    if (const auto excluded = excludedItem(state))
        menu += *excluded;
    if (!state.isAccessible)
        menu += {separator(),
            item(Action::showSettings, u"还没有打开辅助功能权限"_s, u"exclamationmark.triangle"_s)};
    menu += separator();
    menu += programBlock(state.launchesAtLogin);
    return menu;
}

QList<MenuEntry> offers(const QList<MenuEntry> &menu)
{
    using enum Action;
    const QList<Action> offered{
        showReview, showSpelling, showCoach, showWords, showAddWord, showJourney, quit};
    QList<MenuEntry> offers;
    for (const MenuEntry &entry : menu) {
        const bool isMain = entry.kind == MenuEntry::Kind::item && entry.indent == 0;
        if (isMain && offered.contains(actionOf(entry)))
            offers.append(entry);
    }
    return offers;
}

Action actionOf(const MenuEntry &entry)
{
    return static_cast<Action>(entry.action);
}

QString title(const std::optional<WordEntry> &word)
{
    return word ? MenuBarText::title(word->headword) : QString();
}

ToolTip toolTip(const std::optional<WordEntry> &word)
{
    if (!word)
        return {.title = u"Nimbrelle"_s, .text = {}};
    QString text = word->meaningZh.toHtmlEscaped();
    if (const auto sentence = MenuBarText::sentenceTitle(*word))
        text += u'\n' + boldened(*sentence);
    return {.title = word->headword, .text = text};
}

} // namespace nimbrelle::StatusMenu
