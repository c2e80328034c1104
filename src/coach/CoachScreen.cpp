#include "coach/CoachScreen.h"

#include "coach/FactTexts.h"
#include "coach/LocalTimes.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

QString coachDateText(Timestamp now)
{
    const std::chrono::local_days day = LocalTimes().at(now).day;
    const std::chrono::year_month_day date{day};
    return u"%1月%2日 "_s.arg(unsigned{date.month()}).arg(unsigned{date.day()}) + facts::weekdayOf(day);
}

QList<CoachQuestion> offeredQuestions(const QString &todayReview)
{
    QList<CoachQuestion> offered;
    for (const CoachQuestion question : allCoachQuestions) {
        if (question != CoachQuestion::afterReview || !todayReview.isEmpty())
            offered.append(question);
    }
    return offered;
}

} // namespace nimbrelle
