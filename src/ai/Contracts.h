#pragma once

#include "notebook/Explanation.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// What the AI is asked, beside the system texts of Prompts.h, and the records of its replies. Explanation is
/// the fourth record; the notebook keeps it.
namespace nimbrelle {

struct WordEntry;

/// The reply to a typed query.
struct LookupResult {
    struct Alternative {
        QString text;
        QString meaningZh; ///< how it differs

        bool operator==(const Alternative &) const = default;
    };

    Explanation explanation; ///< its fields are in the same flat object
    std::optional<QString> aboutZh;
    std::optional<bool> corrected; ///< true when the AI changed the spelling of what was typed
    std::optional<QList<Alternative>> alternatives; ///< other ways to say a Chinese query

    bool operator==(const LookupResult &) const = default;
};
template <Is<LookupResult::Alternative> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("text", &Record::text), field("meaningZh", &Record::meaningZh));
template <> inline constexpr auto flattenedOf<LookupResult> = &LookupResult::explanation;
template <Is<LookupResult> Record>
inline constexpr auto fieldsOf<Record> = fields(field("aboutZh", &Record::aboutZh),
    field("corrected", &Record::corrected), field("alternatives", &Record::alternatives));

struct Translation {
    struct KeyTerm {
        QString text; ///< as in the translated text
        QString meaningZh;

        bool operator==(const KeyTerm &) const = default;
    };

    QString translationZh;
    std::optional<QList<KeyTerm>> keyTerms;

    bool operator==(const Translation &) const = default;
};
template <Is<Translation::KeyTerm> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("text", &Record::text), field("meaningZh", &Record::meaningZh));
template <Is<Translation> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("translationZh", &Record::translationZh), field("keyTerms", &Record::keyTerms));

struct MnemonicTip {
    QString tipZh;

    bool operator==(const MnemonicTip &) const = default;
};
template <Is<MnemonicTip> Record>
inline constexpr auto fieldsOf<Record> = fields(field("tipZh", &Record::tipZh));

/// The user's part of each contract. Lengths are in characters as a reader sees them.
QString explainMessage(const QString &selection, const std::optional<QString> &context);
QString lookupMessage(const QString &query);
QString translateMessage(const QString &text);
QString mnemonicMessage(const WordEntry &word, const QStringList &knownWords, const QStringList &interests);

} // namespace nimbrelle
