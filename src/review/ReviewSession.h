#pragma once

#include "frame/TaskSlot.h"
#include "notebook/WordStore.h"
#include "review/ReviewQuestion.h"

#include <QCoro/QCoroTask>

namespace nimbrelle {

class Speaker;

/// One round of questions, from the first word to the summary: takes the learner's judgement or typed text,
/// passes the verdict to the notebook and decides what comes next. Lives as long as the application; each
/// round resets it, in the middle of another one too. A word deleted meanwhile is asked from its copy and
/// changes nothing. Main thread only.
class ReviewSession : public QObject {
    Q_OBJECT

public:
    struct Revealed {
        bool typed = false; ///< false while a recognition answer waits for its rating
        std::optional<Rating> rating;
        std::optional<QString> message;

        bool operator==(const Revealed &) const = default;
    };
    struct Asking {
        bool operator==(const Asking &) const = default;
    };
    struct Finished {
        bool operator==(const Finished &) const = default;
    };
    /// The round had nothing to ask; also before the first round.
    struct Empty {
        bool operator==(const Empty &) const = default;
    };
    using Phase = std::variant<Empty, Asking, Revealed, Finished>;

    ReviewSession(WordStore &store, Clock &clock, Speaker &speaker, QObject *parent = nullptr);
    ~ReviewSession() override;

    /// A round of recognition; `extraNew` of 1 or more lets that many words in beyond the daily allowance.
    void start(qint64 extraNew);
    /// A round over the always-spell list.
    void startSpelling();

    /// @name The learner's moves. Each does nothing outside its phase.
    /// @{
    /// Shows the answer of a recognition question.
    void reveal();
    /// Judges a shown recognition answer.
    void rate(Rating rating);
    /// Grades input().
    void submit();
    /// Cuts input() back to what is right and adds one letter.
    void giveLetter();
    /// Leaves a question that is done with.
    void next();
    /// Nobody looks any more: does not go on by itself from a right answer.
    void waitForLearner();
    /// Lays the current word aside for a week, with all its further questions, and moves on.
    void restWord();
    void setInput(const QString &text);
    void setCopyInput(const QString &text);
    /// @}

    const QList<ReviewQuestion> &queue() const { return m_queue; } ///< grows during the round
    qint64 index() const { return m_index; }
    const Phase &phase() const { return m_phase; }
    const QString &input() const { return m_input; }
    const QString &copyInput() const { return m_copyInput; } ///< for copying the answer after a mistake
    qint64 hintsUsed() const { return m_hintsUsed; }
    qint64 remembered() const { return m_remembered; }
    qint64 forgot() const { return m_forgot; }
    qint64 spelledRight() const { return m_spelledRight; }
    const QStringList &graduatedWords() const { return m_graduatedWords; }
    const QStringList &spellLevelUps() const { return m_spellLevelUps; }
    ReviewOutcome lastOutcome() const { return m_lastOutcome; }
    bool isSpellingPractice() const { return m_isSpellingPractice; }

    /// Null when the queue is done; valid until the next move.
    const ReviewQuestion *current() const;
    /// The current word as the notebook has it now, or the question's copy if it was deleted.
    std::optional<WordEntry> liveEntry() const;

signals:
    /// Something above changed, or something in the notebook did.
    void changed();

private:
    QList<ReviewQuestion> questions(
        const QList<QUuid> &ids, ReviewQuestion (*question)(const WordEntry &)) const;
    void begin(const QList<ReviewQuestion> &questions);
    void moveOn();
    void resetInput();
    void speakIfDictation();
    void apply(Rating rating, const ReviewQuestion &question);
    void repeatOnce(const QUuid &wordId, ReviewQuestion (*question)(const WordEntry &));
    bool awaitsRating() const;
    void advanceSoon(const QUuid &questionId);
    QCoro::Task<> advance(QUuid questionId, std::stop_token stop);

    WordStore &m_store;
    Clock &m_clock;
    Speaker &m_speaker;

    QList<ReviewQuestion> m_queue;
    qint64 m_index = 0;
    Phase m_phase = Empty{};
    QString m_input;
    QString m_copyInput;
    qint64 m_hintsUsed = 0;
    qint64 m_remembered = 0;
    qint64 m_forgot = 0;
    qint64 m_spelledRight = 0;
    QStringList m_graduatedWords;
    QStringList m_spellLevelUps;
    ReviewOutcome m_lastOutcome = ReviewOutcome::normal;
    bool m_isSpellingPractice = false;
    QSet<QUuid> m_retried; ///< words put back into the queue in this round
    TaskSlot m_advance;
};

} // namespace nimbrelle
