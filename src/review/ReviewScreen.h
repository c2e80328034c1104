#pragma once

#include "review/ReviewSession.h"

#include <array>

/// What the review window says and offers at each moment. Absent means not to be shown.
namespace nimbrelle::ReviewScreen {

/// @name The head of every question
/// @{
/// One character for the kind of the question.
QString badge(const ReviewQuestion &question);
QString prompt(const ReviewQuestion &question);

struct Progress {
    qint64 done = 0;
    qint64 total = 0; ///< may rise during a round
    QString text;

    bool operator==(const Progress &) const = default;
};
std::optional<Progress> progress(const ReviewSession &session);
/// @}

/// What the learner can do at the foot of the screen.
enum class Foot {
    reveal, ///< ask for the answer
    rate, ///< judge the recall by one of allRatings
    next, ///< leave a rated word whose banner was read
    type, ///< type the word
    copy, ///< copy the word after a mistake, or not
    proceed, ///< leave a word that was spelled
};
/// Absent where there is no question.
std::optional<Foot> foot(const ReviewSession &session);

/// In the order of their keys, from 1 on.
inline constexpr std::array allRatings{Rating::again, Rating::hard, Rating::good, Rating::easy};
/// On its button; the coach has other words for them.
QString buttonLabel(Rating rating);

/// A message or an offer below an answer.
enum class Banner { none, graduated, leech, restLink };
Banner banner(const ReviewSession &session, qint64 leechThreshold);
/// Of the banner, or of the link.
QString text(Banner banner);

/// @name A question of spelling
/// @{
/// As many dots as the word has characters.
QString hiddenWord(const QString &word);
/// How the answer begins and how long it is.
QString initialLine(const ReviewQuestion &question);
std::optional<QString> formLine(const ReviewQuestion &question);
/// @}

/// @name The answer
/// @{
/// Leads from the form that the sentence needs back to the word.
std::optional<QString> baseLine(const ReviewQuestion &question);
bool isSentenceGenerated(const ReviewQuestion &question);
/// What a verdict says to a screen reader.
QString verdictName(Rating rating);
/// @}

/// The end of a round.
struct Summary {
    QString figures;
    std::optional<QString> levelUps;
    std::optional<QString> graduated;
    std::optional<QString> comfort;
    bool offersAgain = false;

    bool operator==(const Summary &) const = default;
};
Summary summary(const ReviewSession &session, const WordStore &store, Timestamp now);

/// A round with nothing to ask.
struct EmptyRound {
    enum class Picture { letters, done, tray };

    Picture picture = Picture::tray;
    QString title;
    QStringList lines;
    bool offersMore = false;

    bool operator==(const EmptyRound &) const = default;
};
EmptyRound emptyRound(const ReviewSession &session, const WordStore &store, qint64 learningSlots);

} // namespace nimbrelle::ReviewScreen
