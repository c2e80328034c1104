#pragma once

#include <QString>

#include <array>

namespace nimbrelle {

/// The ready-made questions to the coach.
enum class CoachQuestion { afterReview, focus, weakest, trick };

/// In the order in which they are offered. afterReview is offered only when something was reviewed today.
inline constexpr std::array allCoachQuestions{
    CoachQuestion::afterReview, CoachQuestion::focus, CoachQuestion::weakest, CoachQuestion::trick};

/// What its chip and its bubble show.
QString label(CoachQuestion question);
/// What the AI is asked. `todayReview`: the outcomes of today, which only afterReview quotes.
QString prompt(CoachQuestion question, const QString &todayReview);

} // namespace nimbrelle
