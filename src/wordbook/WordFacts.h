#pragma once

#include "notebook/PageSource.h"
#include "notebook/WordEntry.h"

/// What the notebook says of one word, grammar point or affix, as plain values: a screen that was made from
/// equal facts needs no change.
namespace nimbrelle {

class WordStore;

/// Something that the user can do with a word's stage.
struct StageAction {
    enum class Kind { want, start, rest, spell };

    Kind kind = Kind::want;
    QString text;
    bool turnsOn = true; ///< of want and spell
    bool isEnabled = true;

    bool operator==(const StageAction &) const = default;
};
/// Those on offer, in their order. `hasRoom` is whether one more word can be in learning.
QList<StageAction> stageActions(const WordEntry &entry, bool hasRoom);
void perform(const StageAction &action, WordStore &words, const QUuid &id);

struct Relative {
    QUuid id;
    QString headword;

    bool operator==(const Relative &) const = default;
};

struct WordFacts {
    WordEntry entry;
    DisplayStage stage = DisplayStage::seen;
    QString history; ///< 查过 5 次 · 在 3 天里遇到 · 2026-10-27 保存
    QString reviews; ///< 下次复习：11 月 25 日 · 复习过 6 次; empty before the first
    bool isLeech = false;
    QList<StageAction> actions;
    QList<Relative> family;

    bool operator==(const WordFacts &) const = default;
};
/// Absent for an unknown word.
std::optional<WordFacts> wordFacts(
    const WordStore &words, const AppConfig &config, Timestamp now, const QUuid &id);

struct GrammarFacts {
    GrammarPoint point = GrammarPoint::presentSimple;
    qsizetype count = 0; ///< all meetings
    QList<GrammarEncounter> encounters; ///< those that pass the search

    bool operator==(const GrammarFacts &) const = default;
};
GrammarFacts grammarFacts(const WordStore &words, GrammarPoint point, const QString &search);

struct AffixFacts {
    struct Meeting {
        AffixEncounter encounter;
        QString sentenceZh; ///< where the notebook has it; else empty
        QStringList forms; ///< of the word, to be found in the sentence

        bool operator==(const Meeting &) const = default;
    };

    Affix affix = Affix::un;
    QList<Meeting> meetings;

    bool operator==(const AffixFacts &) const = default;
};
AffixFacts affixFacts(const WordStore &words, Affix affix);

/// 11 月 25 日, with the year when it is not that of `now`. Local days.
QString dayText(Timestamp day, Timestamp now);
/// What the family section says of a word that has no relatives in the notebook.
QString noFamilyText(const WordEntry &entry);
/// 遇到 5 次, or 还没遇到.
QString meetingText(const FormSlot &slot);
PageSource sourceOf(const Example &example);
PageSource sourceOf(const AINote &note);
PageSource sourceOf(const GrammarEncounter &encounter);

} // namespace nimbrelle
