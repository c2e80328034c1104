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
template <Is<Example> Record>
inline constexpr auto fieldsOf<Record> = fields(field("id", &Record::id),
    field("sentence", &Record::sentence), field("sentenceZh", &Record::sentenceZh),
    field("meaningZh", &Record::meaningZh), field("isGenerated", &Record::isGenerated),
    field("sourceApp", &Record::sourceApp), field("sourceURL", &Record::sourceURL),
    field("sourceTitle", &Record::sourceTitle), field("addedAt", &Record::addedAt));

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
template <Is<AINote> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("id", &Record::id), field("question", &Record::question), field("answer", &Record::answer),
        field("original", &Record::original), field("translation", &Record::translation),
        field("sourceApp", &Record::sourceApp), field("sourceURL", &Record::sourceURL),
        field("sourceTitle", &Record::sourceTitle), field("addedAt", &Record::addedAt));

/// A form of a word that the user has really met.
struct FormRecord {
    FormKind kind = FormKind::base;
    QString form; ///< as spelled
    Timestamp firstSeenAt;
    qint64 count = 1; ///< encounters with this kind
    std::optional<QString> sentence; ///< the first sentence it was met in

    bool operator==(const FormRecord &) const = default;
};
template <Is<FormRecord> Record>
inline constexpr auto fieldsOf<Record> = fields(field("kind", &Record::kind), field("form", &Record::form),
    field("firstSeenAt", &Record::firstSeenAt), field("count", &Record::count),
    field("sentence", &Record::sentence));

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
template <Is<GrammarEncounter> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("id", &Record::id), field("point", &Record::point), field("headword", &Record::headword),
        field("surface", &Record::surface), field("sentence", &Record::sentence),
        field("sentenceZh", &Record::sentenceZh), field("noteZh", &Record::noteZh),
        field("sourceApp", &Record::sourceApp), field("sourceURL", &Record::sourceURL),
        field("sourceTitle", &Record::sourceTitle), field("addedAt", &Record::addedAt));

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
template <Is<AffixEncounter> Record>
inline constexpr auto fieldsOf<Record> = fields(field("id", &Record::id), field("affix", &Record::affix),
    field("headword", &Record::headword), field("root", &Record::root), field("sentence", &Record::sentence),
    field("addedAt", &Record::addedAt));

/// The counters of one local day.
struct ReviewStats {
    QString day; ///< a DayKey
    qint64 reviewed = 0;
    qint64 newLearned = 0; ///< words that joined the learning set through the daily allowance

    bool operator==(const ReviewStats &) const = default;
};
template <Is<ReviewStats> Record>
inline constexpr auto fieldsOf<Record> = fields(field("day", &Record::day),
    field("reviewed", &Record::reviewed), field("newLearned", &Record::newLearned));

/// What keeps a merge from bringing a deleted thing back.
struct Tombstone {
    QString id; ///< upper-case canonical UUID text
    Timestamp at;

    bool operator==(const Tombstone &) const = default;
};
template <Is<Tombstone> Record>
inline constexpr auto fieldsOf<Record> = fields(field("id", &Record::id), field("at", &Record::at));

/// Upper-case canonical text, the form in which ids are stored and ordered.
QString idText(const QUuid &id);

} // namespace nimbrelle
