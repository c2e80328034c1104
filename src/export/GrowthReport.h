#pragma once

#include "frame/AppConfig.h"
#include "notebook/LearningLog.h"
#include "notebook/WordEntry.h"

#include <QTimeZone>

namespace nimbrelle {

/// What a report on the learner's growth is made from.
struct GrowthSource {
    QList<WordEntry> words;
    QList<AINote> sentenceNotes;
    QList<GrammarEncounter> grammar;
    QList<AffixEncounter> affixes;
    QList<LearningLog::Event> events; ///< in any order
    AppConfig config;
    qint64 newLearned = 0; ///< words that joined the learning set today
};

struct StageCounts {
    qint64 learning = 0;
    qint64 resting = 0;
    qint64 mastered = 0;

    bool operator==(const StageCounts &) const = default;
};

struct GrowthMonth {
    std::chrono::year_month month{};
    qint64 met = 0; ///< different words met
    qint64 kept = 0; ///< words that came into the notebook
    qint64 settled = 0; ///< words mastered for the first time
    std::optional<StageCounts> stages; ///< at its end; absent where the log does not reach

    bool operator==(const GrowthMonth &) const = default;
};

struct GrowthMonths {
    QList<GrowthMonth> months; ///< without gaps, the oldest first, up to this one
    std::optional<GrowthMonth> earlier; ///< what lies before them, as one; its month is the first
    qint64 undatedSettled = 0; ///< mastered words of which the log does not tell when
    qint64 untraced =
        0; ///< words whose way to their stage is not whole in the log: they count in this month only
};

/// How often words were recalled that were known equally well.
struct RecallBand {
    enum class Verdict { tooFew, asPredicted, better, worse };

    double from = 0; ///< stability in days
    double to = 0; ///< not included; infinite in the last
    qint64 answers = 0;
    qint64 recalled = 0;
    double predicted = 0; ///< the mean of what the scheduler expected
    double low = 0, high = 1; ///< where the true share of the recalled lies, with a confidence of 95 %

    double observed() const
    {
        return answers > 0 ? static_cast<double>(recalled) / static_cast<double>(answers) : 0;
    }
    Verdict verdict() const;
};

struct GrowthRecall {
    QList<RecallBand> bands; ///< those with answers
    qint64 answers = 0;
    qint64 untraced = 0; ///< answers about words whose history is not whole in the log
};

struct GrowthCollection {
    struct Form {
        FormKind kind = FormKind::base;
        qint64 met = 0; ///< words met in it
    };
    struct Affixed {
        Affix affix = Affix::un;
        QStringList words; ///< without doubles, the first met first
    };
    struct Grammar {
        GrammarPoint point = GrammarPoint::presentSimple;
        qint64 met = 0;
    };

    QList<Form> forms; ///< those met, by their declared order, as all of these
    qint64 formsMet = 0;
    qint64 formsKnown = 0;
    QList<Affixed> affixes;
    QList<Grammar> grammar;
};

struct GrowthSources {
    struct Place {
        QString name;
        qint64 words = 0;
    };

    QList<Place> places; ///< those with the most words
    qint64 others = 0; ///< further places
};

/// A text of which some pieces are the word in question.
struct MarkedPiece {
    QString text;
    bool isWord = false;

    bool operator==(const MarkedPiece &) const = default;
};

struct PastSentence {
    std::chrono::local_days day;
    QList<MarkedPiece> sentence;
    QString translation; ///< empty when none
    QString headword; ///< empty for a sentence that was noted by itself
    QString meaning;
    QString place; ///< empty when unknown
};

struct GrowthMemories {
    QList<PastSentence> sentences; ///< of the days round that of a year ago
    /// When the first one will be a year old; absent when there is none, or it is older.
    std::optional<std::chrono::local_days> firstOn;
};

/// What is asked when every day's words are answered well on that day.
struct GrowthLoad {
    struct Day {
        std::chrono::local_days day;
        qint64 due = 0;
        qint64 fresh = 0; ///< asked for the first time
    };

    QList<Day> days; ///< today first
    qint64 waiting = 0; ///< of today's, those that were due before
};

struct GrowthReport {
    std::chrono::local_days today;
    std::optional<std::chrono::local_days> since; ///< of the earliest word or event
    std::optional<std::chrono::local_days> logSince;
    qint64 words = 0;
    std::array<qint64, caseCount<DisplayStage>> stages{};
    qint64 gone = 0; ///< words saved once that are not in the notebook any more
    qint64 aheadOfTime = 0; ///< events of a time still to come, which count nowhere
    GrowthMonths growth;
    GrowthRecall recall;
    GrowthCollection collection;
    GrowthSources sources;
    GrowthMemories memories;
    GrowthLoad load;
};

/// Days and months are those of `zone`. Reads no clock and no file.
GrowthReport makeGrowthReport(const GrowthSource &source, Timestamp now, const QTimeZone &zone);

} // namespace nimbrelle
