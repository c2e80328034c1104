#include "coach/views/CoachView.h"

#include "coach/views/CoachStage.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

class CoachViewTest : public testing::Test, protected CoachStage { };

} // namespace

TEST_F(CoachViewTest, ABriefingCanBeWrittenAnewAndTriedAgain)
{
    EXPECT_EQ(user.text("date"), u"3月1日 星期日"_s);
    EXPECT_EQ(user.text("waiting"), u"教练在看你这几天的记录…"_s);
    EXPECT_FALSE(user.isEnabled("rewrite"));
    user.press("stop");
    EXPECT_FALSE(user.shows("waiting"));
    EXPECT_FALSE(user.shows("error"));
    user.press("retry");
    EXPECT_TRUE(user.shows("waiting"));
    EXPECT_FALSE(user.shows("retry"));
    fail();
    EXPECT_EQ(user.text("retry"), u"再试一次"_s);
    EXPECT_TRUE(user.shows("error"));
    view.hide();
    notebook.clock.advance(std::chrono::hours(24));
    view.show(); // which opens nothing by itself
    ViewStage::settle();
    EXPECT_EQ(user.text("date"), u"3月2日 星期一"_s);
    EXPECT_EQ(ai.calls().size(), 2);
    user.press("retry");
    EXPECT_FALSE(user.shows("error"));
    EXPECT_FALSE(user.shows("retry"));
    EXPECT_EQ(ai.calls().size(), 3);
    brief(u"昨天你存了 **rewrite**。"_s);
    EXPECT_EQ(user.text("answer"), u"昨天你存了 rewrite。"_s);
    user.press("rewrite");
    EXPECT_TRUE(user.shows("waiting"));
    fail();
    EXPECT_EQ(user.text("answer"), u"昨天你存了 rewrite。"_s);
    EXPECT_TRUE(user.shows("error"));
    EXPECT_FALSE(user.shows("retry"));
    user.commit("今天只有 5 分钟");
    user.key(Qt::Key_Return);
    fail();
    EXPECT_TRUE(user.shows("error"));
    EXPECT_FALSE(user.shows("retry"));
    EXPECT_EQ(user.text("input"), u"今天只有 5 分钟"_s);
}

TEST_F(CoachViewTest, AQuestionGoesToTheTopAndStaysThereWhileItsAnswerGrows)
{
    brief(manyLines(60));
    EXPECT_EQ(scrollBar(view).value(), 0) << "a briefing is read from its start";
    user.press("chip1");
    EXPECT_EQ(user.text("question"), u"今天重点记哪几个？"_s);
    const int top = user.place("question").top();
    EXPECT_LT(top, user.place("messages").top() + theme.points(20));
    piece(manyLines(60));
    end();
    EXPECT_EQ(user.place("question").top(), top);
}

TEST_F(CoachViewTest, TheReviewOfTodayCanBeTalkedOverAsSoonAsThereIsOne)
{
    brief(u"早"_s);
    EXPECT_FALSE(user.shows("chip0"));
    EXPECT_TRUE(user.shows("chip3"));
    const QUuid id = notebook.save("rewrite");
    notebook.store.applyReview(id, Rating::good, LogKind::review);
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&view, &activated);
    user.press("chip0");
    EXPECT_EQ(user.text("question"), u"聊聊刚才的复习"_s);
    EXPECT_TRUE(ai.calls().last().messages.last().content.startsWith(
        u"我刚复习完。今天复习过的词和每次的结果：\nrewrite：想起来了\n像教练一样"_s));
    EXPECT_FALSE(user.isEnabled("chip0"));
    QSignalSpy review(&view, &CoachView::reviewRequested);
    user.press("startReview");
    EXPECT_EQ(review.count(), 1);
    user.press("stop");
    EXPECT_TRUE(user.isEnabled("chip0"));
}

TEST_F(CoachViewTest, TabGoesDownTheWindowThoughItsPartsAreMadeAnew)
{
    user.press("stop"); // which brings a button to try again, and
    notebook.store.applyReview(notebook.save("rewrite"), Rating::good, LogKind::review);
    QEvent activated(QEvent::WindowActivate); // this another chip
    QCoreApplication::sendEvent(&view, &activated);
    user.find("rewrite")->setFocus();
    QStringList passed;
    for (int i = 0; i < 8; ++i) {
        user.key(Qt::Key_Tab);
        passed.append(user.focused()->objectName());
    }
    EXPECT_THAT(passed,
        testing::ElementsAre(u"messages"_s, u"retry"_s, u"chip0"_s, u"chip1"_s, u"chip2"_s, u"chip3"_s,
            u"startReview"_s, u"input"_s));
}

TEST_F(CoachViewTest, OtherColoursLeaveTheKeyboardWhereItIs)
{
    brief(u"早"_s);
    user.find("chip2")->setFocus();
    theme.setScheme(Theme::Scheme::dark);
    ViewStage::settle();
    EXPECT_TRUE(user.hasFocus("chip2"));
    user.press("chip2"); // which is then disabled
    EXPECT_TRUE(user.hasFocus("input"));
}

TEST_F(CoachViewTest, AChipBehindTheFadingEndComesIntoViewWithTheFocus)
{
    QWidget *last = user.find("startReview");
    const auto right = [&] { return last->mapTo(&view, QPoint(last->width(), 0)).x(); };
    EXPECT_GT(right(), view.width());
    last->setFocus(Qt::TabFocusReason);
    EXPECT_LE(right(), view.width());
}

} // namespace nimbrelle
