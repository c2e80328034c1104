#include "coach/CoachScreen.h"

#include "support/TimeZone.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(CoachScreen, TheDateIsTheLearnersOwn)
{
    const auto late = *timestampFromIso(std::string_view{"2026-11-21T20:00:00Z"});
    {
        const TimeZone shanghai("Asia/Shanghai");
        EXPECT_EQ(coachDateText(late), u"11月22日 星期日"_s);
    }
    const TimeZone utc("UTC");
    EXPECT_EQ(coachDateText(late), u"11月21日 星期六"_s);
}

TEST(CoachScreen, AsksAboutAReviewOnlyWhenThereWasOne)
{
    using enum CoachQuestion;
    EXPECT_THAT(offeredQuestions({}), ElementsAre(focus, weakest, trick));
    EXPECT_THAT(offeredQuestions(u"run：想起来了"_s), ElementsAre(afterReview, focus, weakest, trick));
}

} // namespace nimbrelle
