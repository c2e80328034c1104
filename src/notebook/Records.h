#pragma once

#include "frame/Record.h"
#include "frame/Timestamp.h"
#include "notebook/Catalogue.h"

#include <QUuid>

#include <optional>

/// The plain value records of the notebook. Their JSON is the same on disk and on the wire; an optional
/// member that is absent is left out.
namespace nimbrelle {

/// A sentence of a word.
struct Example {
    QUuid id;
    QString sentence;
    QString sentenceZh; ///< empty when none
    QString meaningZh; ///< of the word in this sentence
    bool isGenerated = false; ///< the AI wrote the sentence; the user did not meet it
    std::optional<QString> sourceApp;
    std::optional<QString> sourceURL;
    std::optional<QString> sourceTitle;
    Timestamp addedAt;

    bool operator==(const Example &) const = default;
};
template <>
inline constexpr auto fieldsOf<Example> = fields("id", &Example::id, "sentence", &Example::sentence,
    "sentenceZh", &Example::sentenceZh, "meaningZh", &Example::meaningZh, "isGenerated",
    &Example::isGenerated, "sourceApp", &Example::sourceApp, "sourceURL", &Example::sourceURL, "sourceTitle",
    &Example::sourceTitle, "addedAt", &Example::addedAt);

/// A question put to the AI and its answer, kept on a word or as a free sentence note.
struct AINote {
    QUuid id;
    QString question;
    QString answer;
    QString original; ///< the text that was asked about
    std::optional<QString> translation;
    std::optional<QString> sourceApp;
    std::optional<QString> sourceURL;
    std::optional<QString> sourceTitle;
    Timestamp addedAt;

    bool operator==(const AINote &) const = default;
};
template <>
inline constexpr auto fieldsOf<AINote> =
    fields("id", &AINote::id, "question", &AINote::question, "answer", &AINote::answer, "original",
        &AINote::original, "translation", &AINote::translation, "sourceApp", &AINote::sourceApp, "sourceURL",
        &AINote::sourceURL, "sourceTitle", &AINote::sourceTitle, "addedAt", &AINote::addedAt);

/// A form of a word that the user has really met.
struct FormRecord {
    FormKind kind = FormKind::base;
    QString form; ///< as spelled
    Timestamp firstSeenAt;
    qint64 count = 1; ///< encounters with this kind
    std::optional<QString> sentence; ///< the first sentence it was met in

    bool operator==(const FormRecord &) const = default;
};
template <>
inline constexpr auto fieldsOf<FormRecord> = fields("kind", &FormRecord::kind, "form", &FormRecord::form,
    "firstSeenAt", &FormRecord::firstSeenAt, "count", &FormRecord::count, "sentence", &FormRecord::sentence);

/// A grammar point met in a real sentence.
struct GrammarEncounter {
    QUuid id;
    GrammarPoint point = GrammarPoint::presentSimple;
    QString headword; ///< of the word that was looked up
    QString surface; ///< the form in the sentence
    QString sentence;
    std::optional<QString> sentenceZh;
    std::optional<QString> noteZh;
    std::optional<QString> sourceApp;
    std::optional<QString> sourceURL;
    std::optional<QString> sourceTitle;
    Timestamp addedAt;

    bool operator==(const GrammarEncounter &) const = default;
};
template <>
inline constexpr auto fieldsOf<GrammarEncounter> = fields("id", &GrammarEncounter::id, "point",
    &GrammarEncounter::point, "headword", &GrammarEncounter::headword, "surface", &GrammarEncounter::surface,
    "sentence", &GrammarEncounter::sentence, "sentenceZh", &GrammarEncounter::sentenceZh, "noteZh",
    &GrammarEncounter::noteZh, "sourceApp", &GrammarEncounter::sourceApp, "sourceURL",
    &GrammarEncounter::sourceURL, "sourceTitle", &GrammarEncounter::sourceTitle, "addedAt",
    &GrammarEncounter::addedAt);

/// An affix seen in a word.
struct AffixEncounter {
    QUuid id;
    Affix affix = Affix::un;
    QString headword;
    std::optional<QString> root; ///< the word's family root as the AI gave it
    std::optional<QString> sentence;
    Timestamp addedAt;

    bool operator==(const AffixEncounter &) const = default;
};
template <>
inline constexpr auto fieldsOf<AffixEncounter> = fields("id", &AffixEncounter::id, "affix",
    &AffixEncounter::affix, "headword", &AffixEncounter::headword, "root", &AffixEncounter::root, "sentence",
    &AffixEncounter::sentence, "addedAt", &AffixEncounter::addedAt);

/// The counters of one local day.
struct ReviewStats {
    QString day; ///< a DayKey
    qint64 reviewed = 0;
    qint64 newLearned = 0; ///< words that joined the learning set through the daily allowance

    bool operator==(const ReviewStats &) const = default;
};
template <>
inline constexpr auto fieldsOf<ReviewStats> = fields(
    "day", &ReviewStats::day, "reviewed", &ReviewStats::reviewed, "newLearned", &ReviewStats::newLearned);

/// What keeps a merge from bringing a deleted thing back.
struct Tombstone {
    QString id; ///< upper-case canonical UUID text
    Timestamp at;

    bool operator==(const Tombstone &) const = default;
};
template <> inline constexpr auto fieldsOf<Tombstone> = fields("id", &Tombstone::id, "at", &Tombstone::at);

/// Upper-case canonical text, the form in which ids are stored and ordered.
QString idText(const QUuid &id);

} // namespace nimbrelle
