#pragma once

#include "frame/Record.h"
#include "frame/Timestamp.h"

#include <QList>
#include <QStringList>

#include <array>

namespace nimbrelle {

/// The modifier key that a gesture uses.
enum class ModifierKey { option, command, control, shift };
template <> inline constexpr auto caseNames<ModifierKey> = cases("option", "command", "control", "shift");

/// As screens show it, such as "⌥ Option".
QString label(ModifierKey key);

/// The same with the name on this keyboard behind it, such as "⌥ Option（Alt）", where that is another one.
QString keyboardLabel(ModifierKey key);

/// The settings that travel between devices.
struct StudyValues {
    qint64 learningSlots = 30;
    qint64 dailyNewLimit = 8;
    qint64 sessionSize = 15;
    qint64 graduateDays = 30;
    qint64 leechThreshold = 4;
    qint64 dormantDays = 30;
    bool recallOnLookup = true;

    /// As integers in declared order: the tie-break between two settings of one time.
    std::array<qint64, 7> order() const;

    bool operator==(const StudyValues &) const = default;
};
template <Is<StudyValues> Record>
inline constexpr auto fieldsOf<Record> = fields(field("learningSlots", &Record::learningSlots),
    field("dailyNewLimit", &Record::dailyNewLimit), field("sessionSize", &Record::sessionSize),
    field("graduateDays", &Record::graduateDays), field("leechThreshold", &Record::leechThreshold),
    field("dormantDays", &Record::dormantDays), field("recallOnLookup", &Record::recallOnLookup));

/// The same with the time of their last change.
struct StudySettings : StudyValues {
    Timestamp changedAt;

    bool operator==(const StudySettings &) const = default;
};
template <Is<StudySettings> Record>
inline constexpr auto fieldsOf<Record> =
    fieldsWithBase<StudyValues>(fields(field("changedAt", &Record::changedAt)));

/// All settings of this device. Missing keys of a file take these defaults.
struct AppConfig : StudyValues {
    QString apiKey;
    QString baseURL = defaultBaseURL();
    QString model = defaultModel();
    bool autoPopupOnSelect = true;
    bool dwellLookup = true;
    double dwellSeconds = 1.0;
    bool optionHoverOCR = true; ///< the hover key reads the word under the pointer, whichever key it is now
    ModifierKey hoverKey = ModifierKey::option;
    ModifierKey regionKey = ModifierKey::command;
    bool optionRegionTranslate = true;
    bool menuBarWord = true;
    QStringList excludedBundleIDs = defaultExcludedBundleIDs();
    /// The copy shortcut is never sent to these, besides the programs that are known to take harm.
    QStringList noCopyBundleIDs;
    QString syncServer;
    QString syncToken;
    QString syncPin;
    QString studySettingsAt; ///< when a study setting last changed, as ISO 8601 text; empty: never

    static QString defaultBaseURL();
    static QString defaultModel();
    static QStringList defaultExcludedBundleIDs();
    /// One program is called "Mousepad" in one kind of session and "mousepad" in another.
    bool excludes(const QString &bundleID) const
    {
        return excludedBundleIDs.contains(bundleID, Qt::CaseInsensitive);
    }

    /// Absent while no study setting was ever changed here: the device then takes those of the others.
    std::optional<StudySettings> studySettings() const;
    bool hasStudySettingsOf(const AppConfig &other) const;
    void takeStudySettings(const StudySettings &settings);

    bool operator==(const AppConfig &) const = default;
};
template <> inline constexpr bool missingTakesDefault<AppConfig> = true;
template <Is<AppConfig> Record>
inline constexpr auto fieldsOf<Record> = fieldsWithBase<StudyValues>(fields(field("apiKey", &Record::apiKey),
    field("baseURL", &Record::baseURL), field("model", &Record::model),
    field("autoPopupOnSelect", &Record::autoPopupOnSelect), field("dwellLookup", &Record::dwellLookup),
    field("dwellSeconds", &Record::dwellSeconds), field("optionHoverOCR", &Record::optionHoverOCR),
    field("hoverKey", lenient(&Record::hoverKey)), field("regionKey", lenient(&Record::regionKey)),
    field("optionRegionTranslate", &Record::optionRegionTranslate),
    field("menuBarWord", &Record::menuBarWord), field("excludedBundleIDs", &Record::excludedBundleIDs),
    field("noCopyBundleIDs", &Record::noCopyBundleIDs), field("syncServer", &Record::syncServer),
    field("syncToken", &Record::syncToken), field("syncPin", &Record::syncPin),
    field("studySettingsAt", &Record::studySettingsAt)));

} // namespace nimbrelle
