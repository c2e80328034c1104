#include "settings/views/SettingsSections.h"

#include "frame/Text.h"
#include "settings/KeyTest.h"
#include "settings/SettingsText.h"
#include "settings/Version.h"
#include "settings/views/ApplicationChooser.h"
#include "widgets/FlowLayout.h"
#include "widgets/ReadText.h"
#include "widgets/Switch.h"

#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString nameOf(Grant grant)
{
    return grant == Grant::accessibility ? u"Accessibility"_s : u"ScreenCapture"_s;
}

QHBoxLayout *makeGranted(const Theme &theme, Grant grant)
{
    auto *state = new QHBoxLayout;
    state->setSpacing(theme.points(5));
    state->addWidget(makeIconLabel(theme, Icon::checkCircleFill, 14, theme.colour(Tone::good)));
    auto *granted = makeLabel(theme, u"已开启"_s, TextType::small, Tone::good);
    granted->setObjectName(u"granted"_s + nameOf(grant));
    state->addWidget(granted);
    return state;
}

QVBoxLayout *bareColumn(QWidget *holder, int spacing)
{
    auto *column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    return column;
}

/// A field that holds a setting. What is typed counts at once, without blanks at its ends, which a paste
/// may bring along. Leaving it empty puts the default back.
QLineEdit *makeBoundField(const SettingsParts &parts, const QString &name, const QString &what,
    const QString &placeholder, QString AppConfig::*value)
{
    QLineEdit *field = makeField(parts.theme, name, what, placeholder);
    QObject::connect(field, &QLineEdit::textEdited, field, [&parts, value](const QString &text) {
        parts.change([&](AppConfig &config) { config.*value = trimmedSpace(text); });
    });
    QObject::connect(field, &QLineEdit::editingFinished, field, [&parts, value] {
        if ((parts.config.config().*value).isEmpty())
            parts.change([&](AppConfig &config) { config.*value = AppConfig().*value; });
    });
    const auto show = [&parts, field, value] {
        const QString &stored = parts.config.config().*value;
        if (trimmedSpace(field->text()) != stored)
            field->setText(stored);
    };
    QObject::connect(&parts.config, &ConfigStore::configChanged, field, show);
    show();
    return field;
}

} // namespace

FormRow *makeSwitchRow(
    const SettingsParts &parts, const QString &name, const QString &label, bool AppConfig::*value)
{
    auto *control = new Switch(parts.theme, name, label);
    auto *row = new FormRow(parts.theme, label, control);
    row->setTarget(control);
    QObject::connect(control, &Switch::clicked, control,
        [&parts, value](bool on) { parts.change([&](AppConfig &config) { config.*value = on; }); });
    const auto show = [&parts, control, value] { control->setChecked(parts.config.config().*value); };
    QObject::connect(&parts.config, &ConfigStore::configChanged, control, show);
    show();
    return row;
}

OfferRow::OfferRow(const SettingsParts &parts) : m_parts(parts)
{
    new FlowLayout(parts.theme.points(8), parts.theme.points(8), this);
    refresh();
}

void OfferRow::refresh()
{
    const QList<MenuEntry> offers = m_parts.offers();
    if (std::exchange(m_offers, offers) != offers)
        rebuild();
    setVisible(!m_offers.isEmpty());
}

void OfferRow::rebuild()
{
    const QWidget *focus = focusWidget();
    const QString focused =
        focus && focus->hasFocus() && isAncestorOf(focus) ? focus->objectName() : QString();
    qDeleteAll(findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
    for (const MenuEntry &entry : std::as_const(m_offers)) {
        auto *button = makeButton(m_parts.theme, u"offer%1"_s.arg(entry.action), entry.title, {});
        button->setEnabled(entry.isEnabled);
        connect(button, &QPushButton::clicked, this, [this, entry] { emit chosen(entry); });
        layout()->addWidget(button);
        button->show(); // what is not shown yet takes no focus
        if (button->objectName() == focused)
            button->setFocus(Qt::OtherFocusReason);
    }
}

PermissionSection::PermissionSection(const SettingsParts &parts)
    : m_parts(parts), m_group(new FormGroup(parts.theme))
{
    bareColumn(this, 0)->addWidget(makeSection(parts.theme, u"第一步：打开两个系统权限"_s, m_group));
    refresh();
}

void PermissionSection::refresh()
{
    const QList<PermissionRow> rows = m_parts.permissions.rows();
    if (rows == m_rows)
        return;
    m_rows = rows;
    rebuild();
}

void PermissionSection::rebuild()
{
    m_group->clear();
    const auto missing = std::ranges::find(m_rows, false, &PermissionRow::granted);
    for (int i = 0; i < m_rows.size(); ++i)
        m_group->add(makeRow(i, m_rows.begin() + i == missing));
    if (std::ranges::any_of(m_rows, &PermissionRow::needsRelaunch))
        m_group->add(makeRelaunchRow());
}

FormRow *PermissionSection::makeRow(int index, bool isFirstMissing) const
{
    const Theme &theme = m_parts.theme;
    const PermissionRow &permission = m_rows.at(index);
    auto *row = new FormRow(theme, permission.title, nullptr);
    row->setObjectName(u"permission"_s + nameOf(permission.grant));
    if (permission.granted)
        row->line()->addLayout(makeGranted(theme, permission.grant));
    if (!permission.request.isEmpty()) {
        auto *button = makeButton(theme, u"grant"_s + nameOf(permission.grant), permission.request,
            {isFirstMissing ? ButtonKind::primary : ButtonKind::outlined});
        button->setAccessibleDescription(permission.title);
        QObject::connect(button, &QPushButton::clicked, button,
            [&parts = m_parts, grant = permission.grant] { parts.permissions.request(grant); });
        row->line()->addWidget(button, 0, Qt::AlignTop);
    }
    row->addNote(u"detail"_s + nameOf(permission.grant), permission.detail);
    return row;
}

FormRow *PermissionSection::makeRelaunchRow() const
{
    const Theme &theme = m_parts.theme;
    auto *row = new FormRow(theme);
    ReadText *note =
        makeNote(theme, u"relaunchNote"_s, u"在系统设置里打开「屏幕录制」后，需要重启本应用才能生效。"_s);
    row->line()->addWidget(note, 1, Qt::AlignVCenter);
    auto *button = makeButton(theme, u"relaunch"_s, u"重启应用"_s, {});
    QObject::connect(button, &QPushButton::clicked, button,
        [&parts = m_parts] { parts.permissions.relaunch(QCoreApplication::applicationFilePath()); });
    row->line()->addWidget(button, 0, Qt::AlignTop);
    return row;
}

namespace {

FormRow *makeKeyRow(const SettingsParts &parts)
{
    const Theme &theme = parts.theme;
    auto *row = new FormRow(theme);
    QLineEdit *field = makeBoundField(parts, u"apiKey"_s, u"API key"_s, u"sk-…"_s, &AppConfig::apiKey);
    field->setEchoMode(QLineEdit::Password);
    auto *button = makeButton(theme, u"testKey"_s, u"测试"_s, {});
    button->setFixedHeight(field->minimumHeight());
    row->line()->addWidget(field, 1);
    row->line()->addWidget(button);
    auto *result = new QWidget;
    auto *column = bareColumn(result, 0);
    column->setContentsMargins(0, theme.points(4), 0, 0);
    row->add(result);
    row->addNote(u"keyNote"_s, SettingsText::keyNote(parts.configPath, QDir::homePath()));

    QObject::connect(button, &QPushButton::clicked, button, [&parts] { parts.keyTest.start(); });
    const auto show = [&parts, button, result, column] {
        const QString text = parts.keyTest.isRunning() ? u"测试中…"_s : u"测试"_s;
        button->setText(text);
        button->setAccessibleName(text);
        setEnabledKeepingFocus(*button, parts.keyTest.canStart());
        qDeleteAll(result->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
        const auto &outcome = parts.keyTest.result();
        result->setVisible(outcome.has_value());
        if (outcome)
            column->addWidget(makeMessage(parts.theme, u"testResult"_s,
                outcome->isGood ? Icon::checkCircleFill : Icon::xCircleFill, outcome->text,
                outcome->isGood ? Tone::good : Tone::bad));
    };
    QObject::connect(&parts.keyTest, &KeyTest::changed, button, show);
    QObject::connect(&parts.config, &ConfigStore::configChanged, button,
        [&parts, button] { button->setEnabled(parts.keyTest.canStart()); });
    show();
    return row;
}

QWidget *makeFieldLine(const Theme &theme, const QString &label, QLineEdit *field)
{
    auto *holder = new QWidget;
    auto *line = new QHBoxLayout(holder);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(theme.points(10));
    QLabel *name = makeLabel(theme, label, TextType::text, Tone::ink);
    name->setMinimumWidth(theme.points(64));
    name->setBuddy(field);
    line->addWidget(name);
    line->addWidget(field, 1);
    return holder;
}

} // namespace

namespace {

/// What the address lacks, below its field, while it lacks something.
ReadText *makeAddressHint(const SettingsParts &parts)
{
    ReadText *hint = makeNote(parts.theme, u"addressHint"_s, QString(), Tone::warn);
    const auto show = [&parts, hint] {
        const QString text = SettingsText::addressHint(parts.config.config().baseURL);
        hint->setText(text);
        hint->setVisible(!text.isEmpty());
    };
    QObject::connect(&parts.config, &ConfigStore::configChanged, hint, show);
    show();
    return hint;
}

} // namespace

QWidget *makeKeySection(const SettingsParts &parts, bool &isAdvancedOpen)
{
    const Theme &theme = parts.theme;
    auto *group = new FormGroup(theme);
    group->add(makeKeyRow(parts));
    auto *body = new QWidget;
    auto *column = bareColumn(body, theme.points(8));
    column->addWidget(makeFieldLine(theme, u"接口地址"_s,
        makeBoundField(parts, u"baseURL"_s, u"接口地址"_s, AppConfig().baseURL, &AppConfig::baseURL)));
    column->addWidget(makeAddressHint(parts));
    column->addWidget(makeFieldLine(theme, u"模型"_s,
        makeBoundField(parts, u"model"_s, u"模型"_s, AppConfig().model, &AppConfig::model)));
    column->addWidget(makeNote(theme, u"localModelNote"_s,
        u"也可以用自己电脑上的模型：接口地址填它的，例如 http://127.0.0.1:8080/v1，API key 随便填几个字母。模型要认得 response_format（按 JSON 回答）。"_s));
    auto *fold = new Fold(theme, u"advanced"_s, u"高级"_s, body);
    fold->setOpen(isAdvancedOpen);
    QObject::connect(fold, &Fold::toggled, fold, [&isAdvancedOpen](bool open) { isAdvancedOpen = open; });
    auto *row = new FormRow(theme);
    row->line()->addWidget(fold);
    group->add(row);
    return makeSection(theme, u"第二步：填写 DeepSeek API key"_s, group);
}

StartSection::StartSection(const SettingsParts &parts) : m_parts(parts)
{
    const Theme &theme = parts.theme;
    const QString label = u"开机自动启动（只在菜单栏显示图标，不弹窗口）"_s;
    m_switch = new Switch(theme, u"launchAtLogin"_s, label);
    auto *group = new FormGroup(theme);
    auto *start = new FormRow(theme, label, m_switch);
    start->setTarget(m_switch);
    group->add(start);
    auto *note = new FormRow(theme);
    note->line()->addWidget(makeNote(theme, u"startNote"_s,
        u"没开自动启动时，可以在应用程序菜单里搜索 Nimbrelle 打开。已经在运行时再打开一次，会弹出这个设置窗口。"_s));
    group->add(note);
    auto *version = makeLabel(
        theme, SettingsText::versionLine(Version::number(), Version::build()), TextType::text, Tone::ink2);
    version->setObjectName(u"version"_s);
    version->setFixedHeight(theme.points(24)); // as high as its label
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    group->add(new FormRow(theme, u"版本"_s, version));
    bareColumn(this, 0)->addWidget(makeSection(theme, u"启动"_s, group));
    connect(m_switch, &Switch::clicked, this, [this](bool on) {
        m_parts.permissions.setLaunchAtLogin(on);
        refresh(); // back again if it failed
    });
    refresh();
}

void StartSection::refresh()
{
    m_switch->setChecked(m_parts.permissions.launchAtLogin());
}

ApplicationSection::ApplicationSection(const SettingsParts &parts, const Look &look)
    : m_parts(parts), m_look(look), m_group(new FormGroup(parts.theme))
{
    bareColumn(this, 0)->addWidget(makeSection(parts.theme, look.title, m_group));
    connect(&parts.config, &ConfigStore::configChanged, this, &ApplicationSection::rebuildIfChanged);
    rebuild();
}

void ApplicationSection::rebuildIfChanged()
{
    if (m_shown != m_parts.applications.rows(m_look.list))
        rebuild();
}

void ApplicationSection::findNames()
{
    if (!m_parts.applications.isKnown())
        m_parts.applications.refresh();
    rebuildIfChanged();
}

void ApplicationSection::rebuild()
{
    const QWidget *focus = focusWidget();
    const bool hadFocus = focus && focus->hasFocus() && isAncestorOf(focus);
    m_shown = m_parts.applications.rows(m_look.list);
    m_group->clear();
    for (const ListedApplications::Row &application : std::as_const(m_shown)) {
        auto *button =
            makeButton(m_parts.theme, u"remove"_s + m_look.name, u"移除"_s, {.kind = ButtonKind::soft});
        button->setAccessibleName(u"移除 "_s + application.name);
        connect(button, &QPushButton::clicked, this,
            [this, id = application.bundleID] { m_parts.applications.remove(m_look.list, id); });
        auto *row = new FormRow(m_parts.theme, application.name, button);
        row->label()->setObjectName(u"name"_s + m_look.name);
        m_group->add(row);
    }
    FormRow *add = makeAddRow();
    if (!m_look.note.isEmpty())
        add->addNote(u"note"_s + m_look.name, m_look.note);
    m_group->add(add);
    if (hadFocus) // what had it is gone
        add->findChild<QPushButton *>()->setFocus(Qt::OtherFocusReason);
}

FormRow *ApplicationSection::makeAddRow()
{
    auto *row = new FormRow(m_parts.theme);
    auto *button = makeButton(m_parts.theme, u"add"_s + m_look.name, u"添加应用…"_s,
        {.kind = ButtonKind::outlined, .icon = Icon::plus});
    connect(button, &QPushButton::clicked, this, &ApplicationSection::choose);
    row->line()->addWidget(button);
    row->line()->addStretch();
    return row;
}

void ApplicationSection::choose()
{
    m_parts.applications.refresh();
    rebuildIfChanged();
    auto *chooser = new ApplicationChooser(m_parts.theme, m_parts.applications.candidates(m_look.list), this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(chooser, &ApplicationChooser::chosen, this,
        [this](const QString &bundleID) { m_parts.applications.add(m_look.list, bundleID); });
    chooser->open();
}

ApplicationSection *makeExclusionSection(const SettingsParts &parts)
{
    return new ApplicationSection(parts,
        {.list = &AppConfig::excludedBundleIDs,
            .title = u"这些应用里不弹出（也可以在菜单栏图标里一键停用当前应用）"_s,
            .note = {},
            .name = u"Excluded"_s});
}

ApplicationSection *makeNoCopySection(const SettingsParts &parts)
{
    return new ApplicationSection(parts,
        {.list = &AppConfig::noCopyBundleIDs,
            .title = u"这些应用里不替你按 Ctrl+C（照样弹出，只是有的划词会读不到）"_s,
            .note =
                u"有的应用不给出选中的文字，只能替你按一下 Ctrl+C，读完再把剪贴板放回去。终端、播放器、虚拟机、远程桌面和会拿 Ctrl+C 做别的事的编辑器里从来不按，不用加在这里。"_s,
            .name = u"NoCopy"_s});
}

} // namespace nimbrelle
