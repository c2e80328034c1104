#include "frame/AppConfig.h"

namespace nimbrelle {

QString label(ModifierKey key)
{
    switch (key) {
    case ModifierKey::option:
        return QStringLiteral("⌥ Option");
    case ModifierKey::command:
        return QStringLiteral("⌘ Command");
    case ModifierKey::control:
        return QStringLiteral("⌃ Control");
    case ModifierKey::shift:
        return QStringLiteral("⇧ Shift");
    }
    return {};
}

QString keyboardLabel(ModifierKey key)
{
    switch (key) {
    case ModifierKey::option:
        return label(key) + QStringLiteral("（Alt）");
    case ModifierKey::command:
        return label(key) + QStringLiteral("（Super）");
    case ModifierKey::control:
        return label(key) + QStringLiteral("（Ctrl）");
    case ModifierKey::shift:
        return label(key);
    }
    return {};
}

std::array<qint64, 7> StudySettings::order() const
{
    return {learningSlots, dailyNewLimit, sessionSize, graduateDays, leechThreshold, dormantDays,
        recallOnLookup ? 1 : 0};
}

QStringList AppConfig::defaultExcludedBundleIDs()
{
    return {
        QStringLiteral("com.apple.finder"),
        QStringLiteral("com.apple.Terminal"),
        QStringLiteral("com.googlecode.iterm2"),
        QStringLiteral("com.apple.dt.Xcode"),
        QStringLiteral("com.microsoft.VSCode"),
        QStringLiteral("com.apple.keychainaccess"),
        QStringLiteral("com.apple.Passwords"),
        QStringLiteral("com.1password.1password"),
        QStringLiteral("com.agilebits.onepassword7"),
    };
}

std::optional<StudySettings> AppConfig::studySettings() const
{
    const auto changedAt = timestampFromIso(studySettingsAt);
    if (!changedAt)
        return std::nullopt;
    return StudySettings{learningSlots, dailyNewLimit, sessionSize, graduateDays, leechThreshold, dormantDays,
        recallOnLookup, *changedAt};
}

bool AppConfig::hasStudySettingsOf(const AppConfig &other) const
{
    return learningSlots == other.learningSlots && dailyNewLimit == other.dailyNewLimit
        && sessionSize == other.sessionSize && graduateDays == other.graduateDays
        && leechThreshold == other.leechThreshold && dormantDays == other.dormantDays
        && recallOnLookup == other.recallOnLookup;
}

void AppConfig::takeStudySettings(const StudySettings &settings)
{
    learningSlots = settings.learningSlots;
    dailyNewLimit = settings.dailyNewLimit;
    sessionSize = settings.sessionSize;
    graduateDays = settings.graduateDays;
    leechThreshold = settings.leechThreshold;
    dormantDays = settings.dormantDays;
    recallOnLookup = settings.recallOnLookup;
    studySettingsAt = isoText(settings.changedAt);
}

} // namespace nimbrelle
