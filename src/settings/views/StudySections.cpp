#include "settings/SettingsText.h"
#include "settings/StudySteps.h"
#include "settings/views/SettingsSections.h"
#include "widgets/Pickers.h"
#include "widgets/ReadText.h"
#include "widgets/Stepper.h"

#include <QHBoxLayout>
#include <QLabel>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr StepSlider::Range dwellRange{0.5, 2.5, 0.25};

/// Shows the row only while the setting is on.
void showWhile(const SettingsParts &parts, QWidget *row, bool AppConfig::*condition)
{
    const auto show = [&parts, row, condition] { row->setVisible(parts.config.config().*condition); };
    QObject::connect(&parts.config, &ConfigStore::configChanged, row, show);
    show();
}

FormRow *makeDwellRow(const SettingsParts &parts)
{
    const Theme &theme = parts.theme;
    auto *slider = new StepSlider(theme, u"dwellSeconds"_s, u"停多久才查"_s, dwellRange);
    auto *row = new FormRow(theme, u"停多久才查"_s, slider);
    QLabel *value = makeLabel(theme, {}, TextType::text, Tone::ink2);
    value->setObjectName(u"dwellValue"_s);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    value->setFixedWidth(value->fontMetrics().horizontalAdvance(u"0.00 秒"_s));
    value->setFixedHeight(slider->height());
    row->line()->addWidget(value, 0, Qt::AlignTop);
    QObject::connect(slider, &StepSlider::chosen, slider, [&parts](double seconds) {
        parts.change([&](AppConfig &config) { config.dwellSeconds = seconds; });
    });
    const auto show = [&parts, slider, value] {
        slider->showValue(parts.config.config().dwellSeconds);
        value->setText(SettingsText::dwellLabel(parts.config.config().dwellSeconds));
    };
    QObject::connect(&parts.config, &ConfigStore::configChanged, slider, show);
    show();
    return row;
}

FormRow *makeKeyPickerRow(
    const SettingsParts &parts, const QString &name, const QString &label, ModifierKey AppConfig::*value)
{
    static constexpr std::array keys{
        ModifierKey::option, ModifierKey::command, ModifierKey::control, ModifierKey::shift};
    QStringList labels;
    for (const ModifierKey key : keys)
        labels.append(keyboardLabel(key));
    auto *picker = new Picker(parts.theme, name, label, labels);
    QObject::connect(picker, &QComboBox::activated, picker, [&parts, value](int index) {
        parts.change([&](AppConfig &config) { config.*value = keys.at(static_cast<std::size_t>(index)); });
    });
    const auto show = [&parts, picker, value] {
        const auto key = std::ranges::find(keys, parts.config.config().*value);
        picker->setCurrentIndex(static_cast<int>(key - keys.begin()));
    };
    QObject::connect(&parts.config, &ConfigStore::configChanged, picker, show);
    show();
    return new FormRow(parts.theme, label, picker);
}

FormRow *makeWarningRow(
    const SettingsParts &parts, const QString &name, const QString &text, bool (*applies)(const AppConfig &))
{
    auto *row = new FormRow(parts.theme);
    row->line()->addWidget(makeMessage(parts.theme, name, Icon::warning, text, Tone::warn));
    const auto show = [&parts, row, applies] { row->setVisible(applies(parts.config.config())); };
    QObject::connect(&parts.config, &ConfigStore::configChanged, row, show);
    show();
    return row;
}

FormRow *makeStepRow(const SettingsParts &parts, const StudyStep &step)
{
    auto *stepper = new Stepper(parts.theme, QString::fromLatin1(step.name));
    auto *row = new FormRow(parts.theme, step.label(parts.config.config()), stepper);
    row->label()->setObjectName(QString::fromLatin1(step.name));
    const auto take = [&parts, &step](std::optional<qint64> value) {
        if (value)
            parts.change([&](AppConfig &config) { config.*step.value = *value; });
    };
    QObject::connect(stepper, &Stepper::steppedDown, stepper,
        [&parts, &step, take] { take(step.down(parts.config.config())); });
    QObject::connect(stepper, &Stepper::steppedUp, stepper,
        [&parts, &step, take] { take(step.up(parts.config.config())); });
    const auto show = [&parts, &step, row, stepper] {
        const AppConfig &config = parts.config.config();
        row->setLabel(step.label(config));
        stepper->setValue(step.label(config), step.down(config).has_value(), step.up(config).has_value());
    };
    QObject::connect(&parts.config, &ConfigStore::configChanged, stepper, show);
    show();
    return row;
}

} // namespace

QWidget *makeLookupSection(const SettingsParts &parts)
{
    const Theme &theme = parts.theme;
    auto *group = new FormGroup(theme);
    FormRow *popup = makeSwitchRow(
        parts, u"autoPopup"_s, u"划选 1～5 个英文单词时自动弹出解释"_s, &AppConfig::autoPopupOnSelect);
    popup->addNote(u"popupNote"_s,
        u"划选一长段英文时，旁边只会出现一个「译」字小图标，点了才翻译。\n点卡片外面任意地方或按 Esc 关闭卡片。"_s);
    group->add(popup);

    group->add(makeSwitchRow(parts, u"dwell"_s, u"鼠标停在英文上，自动查这个词"_s, &AppConfig::dwellLookup));
    FormRow *dwell = makeDwellRow(parts);
    group->add(dwell);
    showWhile(parts, dwell, &AppConfig::dwellLookup);
    auto *note = new FormRow(theme);
    note->line()->addWidget(makeNote(theme, u"dwellNote"_s,
        u"鼠标移开，卡片就自动收起；移到卡片上就不会收起。打字时、指着菜单栏或 Dock 时不会查。"
        "需要「屏幕录制」权限。"_s));
    group->add(note);

    group->add(
        makeSwitchRow(parts, u"hover"_s, u"按住一个键，鼠标指着词马上识别"_s, &AppConfig::optionHoverOCR));
    FormRow *hoverKey = makeKeyPickerRow(parts, u"hoverKey"_s, u"按住哪个键"_s, &AppConfig::hoverKey);
    group->add(hoverKey);
    showWhile(parts, hoverKey, &AppConfig::optionHoverOCR);

    group->add(makeSwitchRow(
        parts, u"region"_s, u"连按两下一个键，拖一个框翻译框里的文字"_s, &AppConfig::optionRegionTranslate));
    FormRow *regionKey = makeKeyPickerRow(parts, u"regionKey"_s, u"连按哪个键"_s, &AppConfig::regionKey);
    group->add(regionKey);
    showWhile(parts, regionKey, &AppConfig::optionRegionTranslate);
    group->add(makeWarningRow(parts, u"warningTaken"_s,
        u"连按两下 Option 已经被 Claude 桌面版用了，可能会同时打开 Claude。"_s,
        &SettingsText::isKeyTakenElsewhere));
    group->add(makeWarningRow(parts, u"warningTwice"_s,
        u"两个功能用了同一个键，连按时也可能触发识别。建议选不同的键。"_s, &SettingsText::isKeyUsedTwice));
    return makeSection(theme, u"查词方式和快捷键"_s, group);
}

QWidget *makeStudySection(const SettingsParts &parts)
{
    auto *group = new FormGroup(parts.theme);
    for (const StudyStep &step : studySteps()) {
        FormRow *row = makeStepRow(parts, step);
        if (step.value == &AppConfig::learningSlots)
            row->addNote(u"slotsNote"_s,
                u"同时在学的词最多这么多个。每天的复习量只由它决定，存多少词都不会增加压力。"
                "30 个大约每天 3 分钟，150 个大约每天 15 分钟。"_s);
        group->add(row);
    }
    group->add(makeSwitchRow(
        parts, u"recall"_s, u"查到已保存的词时，先遮住意思让我回想"_s, &AppConfig::recallOnLookup));
    return makeSection(parts.theme, u"复习"_s, group);
}

} // namespace nimbrelle
