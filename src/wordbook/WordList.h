#pragma once

#include "notebook/WordEntry.h"

#include <QFlags>

#include <variant>

/// What the notebook's lists show, as pure functions of its records.
namespace nimbrelle {

class WordStore;

enum class WordListTab { words, grammar, affixes, notes };

/// 生词, 语法, 词缀, 笔记.
QString label(WordListTab tab);
/// Empty where the tab has no search.
QString searchPlaceholder(WordListTab tab);
/// For the detail pane while nothing is chosen.
QString nothingChosenText(WordListTab tab);

struct WordFilter {
    QString search; ///< as typed
    std::optional<DisplayStage> stage; ///< absent for all

    bool operator==(const WordFilter &) const = default;
};

/// The rows of the word tab, as positions in `entries`.
QList<qsizetype> filtered(
    const QList<WordEntry> &entries, const WordFilter &filter, const AppConfig &config, Timestamp now);
QList<AINote> filteredNotes(const QList<AINote> &notes, const QString &search);
QList<GrammarEncounter> filteredEncounters(
    const QList<GrammarEncounter> &encounters, GrammarPoint point, const QString &search);
QList<AffixEncounter> encountersOf(const QList<AffixEncounter> &encounters, Affix affix);

/// 在学 24 · 共 186 个.
QString wordHeader(qint64 learning, qsizetype total);

/// The small pictures at the end of a row; at most one of the stages and `unlocked` comes last.
enum class RowMark {
    wanted = 0x1,
    spelled = 0x2,
    noted = 0x4,
    learning = 0x8,
    resting = 0x10,
    mastered = 0x20,
    dormant = 0x40,
    unlocked = 0x80,
};
Q_DECLARE_FLAGS(RowMarks, RowMark)
Q_DECLARE_OPERATORS_FOR_FLAGS(RowMarks)

/// What a mark means, for its tip and for a screen reader.
QString label(RowMark mark);

/// What a row shows; a heading shows nothing that can be chosen.
using RowKey = std::variant<std::monostate, QUuid, GrammarPoint, Affix>;

struct ListRow {
    RowKey key;
    QString title;
    QString detail; ///< of notes, below the title
    RowMarks marks;
    std::optional<qsizetype> count; ///< of affixes
    bool isMuted = false; ///< not unlocked yet

    bool isHeading() const { return std::holds_alternative<std::monostate>(key); }

    bool operator==(const ListRow &) const = default;
};

QList<ListRow> wordRows(
    const QList<WordEntry> &entries, const WordFilter &filter, const AppConfig &config, Timestamp now);
QList<ListRow> grammarRows(const QList<GrammarEncounter> &encounters);
QList<ListRow> affixRows(const QList<AffixEncounter> &encounters);
ListRow noteRow(const AINote &note);
QList<ListRow> noteRows(const QList<AINote> &notes, const QString &search);

/// In the place of an empty list. `isFiltered` when there are rows but none passes.
QString emptyListText(WordListTab tab, bool isFiltered);

} // namespace nimbrelle
