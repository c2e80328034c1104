#pragma once

#include "notebook/Records.h"
#include "review/ReviewState.h"

#include <QList>
#include <QMap>
#include <QStringList>

#include <functional>

namespace nimbrelle {

struct AppConfig;

/// As stored; absent means the same as seen.
enum class Stage { seen, learning, resting, mastered };
template <> inline constexpr auto caseNames<Stage> = cases("seen", "learning", "resting", "mastered");

/// As lists show it; dormant is computed and never stored.
enum class DisplayStage { learning, seen, resting, mastered, dormant };
template <>
inline constexpr auto caseNames<DisplayStage> = cases("learning", "seen", "resting", "mastered", "dormant");

/// 在学, 见过, 休息, 掌握, 沉睡.
QString label(DisplayStage stage);

/// One form of a word, met or still to be met.
struct FormSlot {
    FormKind kind = FormKind::base;
    QString form;
    std::optional<FormRecord> record; ///< absent until the form was met

    bool operator==(const FormSlot &) const = default;
};

/// One saved word or phrase.
struct WordEntry {
    QUuid id; ///< the word's identity across devices
    QString headword; ///< as the AI gave it; unique in the store without regard to case
    QString phonetic;
    QString pos;
    QString meaningZh;
    QString definitionEn;
    Register register_ = Register::neutral;
    QString registerNoteZh;
    QList<Example> examples; ///< oldest first
    Timestamp createdAt;
    qint64 lookupCount = 1;
    std::optional<Timestamp> lastLookupAt;
    std::optional<QList<AINote>> notes; ///< oldest first
    std::optional<QMap<QString, QString>> inflections; ///< FormKind case name to form
    std::optional<QList<FormRecord>> forms; ///< at most one for each kind
    std::optional<QString> familyRoot;
    std::optional<QList<Affix>> affixes;
    std::optional<ReviewState> review; ///< absent until the first review
    std::optional<Stage> stage;
    std::optional<QStringList> encounterDays; ///< DayKeys, no duplicates
    std::optional<QStringList> sourceKeys; ///< no duplicates
    std::optional<bool> wantToLearn; ///< true or absent
    std::optional<Timestamp> restUntil;
    std::optional<QString> mnemonic;
    std::optional<qint64> spellLevel;
    std::optional<bool> spellPractice; ///< true or absent: on the always-spell list
    std::optional<Timestamp> lastSpelledAt;
    std::optional<Timestamp> stateAt; ///< when the learning state that the user sees last changed

    bool operator==(const WordEntry &) const = default;

    bool isWanted() const { return wantToLearn == true; }
    bool isSpellPractice() const { return spellPractice == true; }
    qint64 lapses() const { return review ? review->lapses : 0; }
    Timestamp lastContact() const { return lastLookupAt.value_or(createdAt); }

    /// The days of meeting the word; for records older than that list, those of creation and last lookup, in
    /// no order that means anything.
    QStringList days() const;
    /// The forms that the word has, met or not: first by the kinds' declared order, then those met beyond
    /// them.
    QList<FormSlot> formSlots() const;
    /// What to look for in a sentence of the word: the headword and the forms, each once.
    QStringList formTexts() const;
    DisplayStage displayStage(const AppConfig &config, Timestamp now) const;
    /// Higher means sooner into learning.
    double priority(const AppConfig &config, Timestamp now) const;
};
/// Reads a day key.
using MidnightOf = std::function<std::optional<Timestamp>(const QString &day)>;

/// As WordEntry::priority, with the reading of day keys handed in for those who rank many words at once.
double priorityOf(
    const WordEntry &entry, const AppConfig &config, Timestamp now, const MidnightOf &midnightOf);

/// What two spellings of one headword have in common, blanks round them and letter case aside.
QString headwordKey(const QString &headword);

template <Is<WordEntry> Record>
inline constexpr auto fieldsOf<Record> = fields(field("id", &Record::id),
    field("headword", &Record::headword), field("phonetic", &Record::phonetic), field("pos", &Record::pos),
    field("meaningZh", &Record::meaningZh), field("definitionEn", &Record::definitionEn),
    field("register", &Record::register_), field("registerNoteZh", &Record::registerNoteZh),
    field("examples", &Record::examples), field("createdAt", &Record::createdAt),
    field("lookupCount", &Record::lookupCount), field("lastLookupAt", &Record::lastLookupAt),
    field("notes", &Record::notes), field("inflections", &Record::inflections),
    field("forms", &Record::forms), field("familyRoot", &Record::familyRoot),
    field("affixes", &Record::affixes), field("review", &Record::review), field("stage", &Record::stage),
    field("encounterDays", &Record::encounterDays), field("sourceKeys", &Record::sourceKeys),
    field("wantToLearn", &Record::wantToLearn), field("restUntil", &Record::restUntil),
    field("mnemonic", &Record::mnemonic), field("spellLevel", &Record::spellLevel),
    field("spellPractice", &Record::spellPractice), field("lastSpelledAt", &Record::lastSpelledAt),
    field("stateAt", &Record::stateAt));

} // namespace nimbrelle
