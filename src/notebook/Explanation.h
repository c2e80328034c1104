#pragma once

#include "notebook/Catalogue.h"

#include <QList>
#include <QMap>
#include <QStringList>

#include <utility>

namespace nimbrelle {

/// What the AI says of one word or phrase in its sentence; the base of what is saved.
struct Explanation {
    QString headword; ///< the dictionary form
    std::optional<QString> phonetic;
    std::optional<QString> pos;
    QString meaningZh; ///< in this context, short
    std::optional<QString> definitionEn;
    std::optional<QString> register_; ///< as the AI wrote it; see registerFrom
    std::optional<QString> registerNoteZh;
    std::optional<QString> sentence;
    std::optional<bool> sentenceIsExample; ///< true when the AI wrote the sentence itself
    std::optional<QString> sentenceZh;
    std::optional<QString> surfaceForm; ///< the selection as the sentence has it
    std::optional<QString> formKind;
    std::optional<QMap<QString, QString>> inflections; ///< keys as the AI wrote them
    std::optional<QString> grammar;
    std::optional<QString> grammarNoteZh;
    std::optional<QString> familyRoot;
    std::optional<QStringList> affixes;

    /// The inflections that name a form kind of ours and are not blank, in the kinds' declared order.
    QList<std::pair<FormKind, QString>> allForms() const;
    /// The affixes that are in the catalogue, in the AI's order, repetitions kept.
    QList<Affix> affixList() const;

    bool operator==(const Explanation &) const = default;
};
template <Is<Explanation> Record>
inline constexpr auto fieldsOf<Record> = fields(field("headword", &Record::headword),
    field("phonetic", &Record::phonetic), field("pos", &Record::pos), field("meaningZh", &Record::meaningZh),
    field("definitionEn", &Record::definitionEn), field("register", &Record::register_),
    field("registerNoteZh", &Record::registerNoteZh), field("sentence", &Record::sentence),
    field("sentenceIsExample", &Record::sentenceIsExample), field("sentenceZh", &Record::sentenceZh),
    field("surfaceForm", &Record::surfaceForm), field("formKind", &Record::formKind),
    field("inflections", &Record::inflections), field("grammar", &Record::grammar),
    field("grammarNoteZh", &Record::grammarNoteZh), field("familyRoot", &Record::familyRoot),
    field("affixes", &Record::affixes));

} // namespace nimbrelle
