#include "frame/AppConfig.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

QString label(ModifierKey key)
{
    switch (key) {
    case ModifierKey::option:
        return u"⌥ Option"_s;
    case ModifierKey::command:
        return u"⌘ Command"_s;
    case ModifierKey::control:
        return u"⌃ Control"_s;
    case ModifierKey::shift:
        return u"⇧ Shift"_s;
    }
    return {};
}

QString keyboardLabel(ModifierKey key)
{
    switch (key) {
    case ModifierKey::option:
        return label(key) + u"（Alt）"_s;
    case ModifierKey::command:
        return label(key) + u"（Super）"_s;
    case ModifierKey::control:
        return label(key) + u"（Ctrl）"_s;
    case ModifierKey::shift:
        return label(key);
    }
    return {};
}

std::array<qint64, 7> StudyValues::order() const
{
    return std::apply(
        [this](const auto &...field) { return std::array{static_cast<qint64>(this->*field.member)...}; },
        fieldsOf<StudyValues>);
}

QString AppConfig::defaultBaseURL()
{
    return u"https://api.deepseek.com"_s;
}

QString AppConfig::defaultModel()
{
    return u"deepseek-chat"_s;
}

QStringList AppConfig::defaultExcludedBundleIDs()
{
    return {
        u"com.apple.finder"_s,
        u"com.apple.Terminal"_s,
        u"com.googlecode.iterm2"_s,
        u"com.apple.dt.Xcode"_s,
        u"com.microsoft.VSCode"_s,
        u"com.apple.keychainaccess"_s,
        u"com.apple.Passwords"_s,
        u"com.1password.1password"_s,
        u"com.agilebits.onepassword7"_s,
    };
}

std::optional<StudySettings> AppConfig::studySettings() const
{
    const auto changedAt = timestampFromIso(studySettingsAt);
    return changedAt ? std::optional(StudySettings{*this, *changedAt}) : std::nullopt;
}

bool AppConfig::hasStudySettingsOf(const AppConfig &other) const
{
    return StudyValues::operator==(other);
}

void AppConfig::takeStudySettings(const StudySettings &settings)
{
    StudyValues::operator=(settings);
    studySettingsAt = isoText(settings.changedAt);
}

} // namespace nimbrelle
