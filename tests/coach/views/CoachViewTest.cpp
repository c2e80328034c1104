#include "coach/views/CoachView.h"

#include "ai/AIError.h"
#include "coach/CoachFacts.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/ViewStage.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

struct CoachStage {
    explicit CoachStage(double scale = 1, Theme::Scheme scheme = Theme::Scheme::light) : theme(scale)
    {
        theme.setScheme(scheme);
        theme.applyToApplication();
        session.open();
        ViewStage::show(view, theme, {500, 680});
    }

    void piece(const QString &text)
    {
        ai.piece(text);
        ViewStage::settle();
    }
    void end()
    {
        ai.endStream();
        ViewStage::settle();
    }
    void fail()
    {
        ai.fail(AIError(AIError::Kind::unauthorized));
        ViewStage::settle();
    }
    void brief(const QString &text)
    {
        piece(text);
        end();
    }
    QScrollBar &bar() const { return *view.findChild<QScrollArea *>(u"messages"_s)->verticalScrollBar(); }

    Notebook notebook;
    FakeAI ai;
    CoachFacts facts{notebook.store, notebook.config, notebook.log};
    Theme theme;
    CoachSession session{notebook.paths, notebook.clock, notebook.config,
        [this](Timestamp now) { return facts.build(now); }, ai.factory()};
    CoachView view{theme, session, facts, notebook.clock};
    ViewStage user{view};
};

class CoachViewTest : public testing::Test, protected CoachStage { };

QString manyLines(int count)
{
    return QStringList(count, u"一行"_s).join(u'\n');
}

} // namespace

TEST_F(CoachViewTest, OpensWithTheBriefingOfTheDayAndKeepsItWhenOpenedAgain)
{
    EXPECT_EQ(user.text("title"), u"AI 教练"_s);
    EXPECT_EQ(user.text("date"), u"3月1日 星期日"_s);
    EXPECT_EQ(user.text("waiting"), u"教练在看你这几天的记录…"_s);
    EXPECT_FALSE(user.isEnabled("rewrite"));
    piece(u"昨天你存了 **rewrite**。"_s);
    EXPECT_EQ(user.text("answer"), u"昨天你存了 rewrite。"_s);
    end();
    view.hide();
    session.open();
    view.show();
    ViewStage::settle();
    EXPECT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(user.text("answer"), u"昨天你存了 rewrite。"_s);
    user.press("rewrite");
    EXPECT_EQ(ai.calls().size(), 2);
    EXPECT_TRUE(user.shows("waiting"));
}

TEST_F(CoachViewTest, ABriefingThatFailedCanBeTriedAgain)
{
    fail();
    EXPECT_EQ(user.text("error"), AIError(AIError::Kind::unauthorized).text());
    EXPECT_EQ(user.text("retry"), u"再试一次"_s);
    view.hide();
    notebook.clock.advance(std::chrono::hours(24));
    view.show(); // which opens nothing by itself
    ViewStage::settle();
    EXPECT_EQ(user.text("date"), u"3月2日 星期一"_s);
    EXPECT_EQ(ai.calls().size(), 1);
    user.press("retry");
    EXPECT_FALSE(user.shows("error"));
    EXPECT_FALSE(user.shows("retry"));
    EXPECT_EQ(ai.calls().size(), 2);
}

TEST_F(CoachViewTest, WhatWasTypedComesBackAfterAFailure)
{
    brief(u"早"_s);
    user.commit("今天只有 5 分钟");
    user.key(Qt::Key_Return);
    EXPECT_EQ(user.text("question"), u"今天只有 5 分钟"_s);
    fail();
    EXPECT_TRUE(user.shows("error"));
    EXPECT_FALSE(user.shows("retry"));
    EXPECT_FALSE(user.shows("question"));
    EXPECT_EQ(user.text("input"), u"今天只有 5 分钟"_s);
}

TEST_F(CoachViewTest, AQuestionGoesToTheTopAndItsAnswerChasesNothing)
{
    brief(manyLines(60));
    EXPECT_EQ(bar().value(), 0); // a briefing is read from its start
    user.press("chip1");
    EXPECT_EQ(user.text("question"), u"今天重点记哪几个？"_s);
    const int top = user.place("question").top();
    EXPECT_LT(top, user.place("messages").top() + theme.points(20));
    piece(manyLines(10));
    piece(manyLines(60));
    end();
    EXPECT_EQ(user.place("question").top(), top);
}

TEST_F(CoachViewTest, TheReviewOfTodayCanBeTalkedOverAsSoonAsThereIsOne)
{
    brief(u"早"_s);
    EXPECT_FALSE(user.shows("chip0"));
    const QUuid id = notebook.save("rewrite");
    notebook.store.applyReview(id, Rating::good, LogKind::review);
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&view, &activated);
    EXPECT_EQ(user.text("chip0"), u"聊聊刚才的复习"_s);
    user.press("chip0");
    EXPECT_EQ(user.text("question"), u"聊聊刚才的复习"_s);
    EXPECT_TRUE(ai.calls().last().messages.last().content.contains(u"rewrite"_s));
    EXPECT_FALSE(user.isEnabled("chip0"));
    QSignalSpy review(&view, &CoachView::reviewRequested);
    user.press("startReview");
    EXPECT_EQ(review.count(), 1);
    user.press("stop");
    EXPECT_TRUE(user.isEnabled("chip0"));
}

TEST_F(CoachViewTest, OtherColoursLeaveTheKeyboardWhereItIs)
{
    brief(u"早"_s);
    user.find("chip2")->setFocus();
    theme.setScheme(Theme::Scheme::dark);
    ViewStage::settle();
    EXPECT_TRUE(user.hasFocus("chip2"));
    user.press("rewrite"); // whose chips can't be pressed
    theme.setScheme(Theme::Scheme::light);
    ViewStage::settle();
    EXPECT_TRUE(user.hasFocus("input"));
}

TEST_F(CoachViewTest, AChipBehindTheFadingEndComesIntoViewWithTheFocus)
{
    const QWidget *last = user.find("startReview");
    const auto right = [&] { return last->mapTo(&view, QPoint(last->width(), 0)).x(); };
    EXPECT_GT(right(), view.width());
    user.find("startReview")->setFocus(Qt::TabFocusReason);
    EXPECT_LE(right(), view.width());
}

struct Look {
    const char *name;
    double scale;
    Theme::Scheme scheme;
};

class CoachLook : public testing::TestWithParam<Look> { };

TEST_P(CoachLook, NoStateCutsAnythingOff)
{
    CoachStage stage(GetParam().scale, GetParam().scheme);
    const auto keep = [&](const char *state) {
        stage.user.keep(u"coach-"_s + QLatin1StringView(state) + QLatin1StringView(GetParam().name));
    };
    keep("waiting");
    stage.fail();
    keep("failed");
    stage.user.press("retry");
    stage.brief(
        u"昨天你在读一篇讲配置迁移的帖子，顺手存了 **rewrite** 和 "
        u"**regression**。读得挺深，这两个词都是在长句"
        u"子里遇到的。\n\n**reluctant** 这次隔了 9 "
        u"天还记得，而且一次就想起来了。说明它已经从“见过”变成“认识”，"
        u"可以放心。\n\n今天这一轮大约 12 题，4 分钟。留意三个就够：\n- **deprecate**：看到 -ec- 就想“文档”\n"
        u"- **flaky**：雪花一样，时有时无\n\n轻松来，不做也没关系。最近在读的东西里，哪一句最让你卡住？"_s);
    keep("briefing");
    stage.user.commit("今天只有 5 分钟");
    stage.user.key(Qt::Key_Return);
    stage.brief(u"5 分钟刚好一轮。只看 **deprecate** 和 **flaky**，其余的交给明天。"_s);
    keep("talk");
}

INSTANTIATE_TEST_SUITE_P(Schemes, CoachLook,
    testing::Values(Look{"-light", 1, Theme::Scheme::light}, Look{"-dark", 1, Theme::Scheme::dark},
        Look{"-large", 2, Theme::Scheme::light}));

} // namespace nimbrelle
