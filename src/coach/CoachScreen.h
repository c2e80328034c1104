#pragma once

#include "coach/CoachQuestion.h"
#include "frame/Timestamp.h"

#include <QList>

/// What the coach's window says beside the conversation.
namespace nimbrelle {

/// The learner's own day, such as 11月22日 星期日.
QString coachDateText(Timestamp now);

/// The ready-made questions that can be asked now. `todayReview`: the outcomes of today, empty for none.
QList<CoachQuestion> offeredQuestions(const QString &todayReview);

} // namespace nimbrelle
