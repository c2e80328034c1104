#include "card/views/AskView.h"

#include "ai/AIError.h"
#include "card/views/AskStage.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

class AskViewTest : public testing::Test, protected AskStage { };

} // namespace

TEST_F(AskViewTest, AQuestionIsTypedAnsweredPieceByPieceAndKept)
{
    EXPECT_EQ(user.text("hint"), u"点下面的问题直接问，或者自己输入。"_s);
    EXPECT_TRUE(user.hasFocus("input"));
    EXPECT_FALSE(user.isEnabled("send"));
    user.type("why?");
    EXPECT_TRUE(user.isEnabled("send"));
    user.key(Qt::Key_Return);
    EXPECT_FALSE(user.shows("hint"));
    EXPECT_EQ(user.text("input"), QString());
    EXPECT_EQ(user.text("question"), u"why?"_s);
    EXPECT_EQ(user.text("waiting"), u"正在想…"_s);
    EXPECT_FALSE(user.isEnabled("chip0"));
    EXPECT_FALSE(user.shows("send"));
    piece(u"It is **po"_s);
    const QWidget *row = user.find("answer");
    piece(u"lite**\n- so"_s);
    EXPECT_EQ(user.text("answer"), u"It is polite\n- so"_s);
    EXPECT_EQ(user.find("answer"), row);
    EXPECT_FALSE(user.shows("waiting"));
    theme.setScheme(Theme::Scheme::dark); // makes all widgets anew
    EXPECT_FALSE(user.shows("save"));
    end();
    EXPECT_EQ(user.text("save"), u"存到「reluctant」"_s);
    user.press("save");
    EXPECT_FALSE(user.shows("save"));
    EXPECT_EQ(user.text("saved"), u"已存"_s);
    EXPECT_EQ(notebook.word("reluctant").notes->first().answer, u"It is **polite**\n- so"_s);
    EXPECT_TRUE(user.isEnabled("chip0"));
    EXPECT_TRUE(user.hasFocus("input"));
    theme.setScheme(Theme::Scheme::light);
    EXPECT_TRUE(user.shows("saved"));
}

TEST_F(AskViewTest, AChipAsksAndStoppingKeepsWhatCame)
{
    user.press("chip1");
    EXPECT_EQ(user.text("question"), u"拆解句子结构"_s);
    piece(u"half"_s);
    user.press("stop");
    EXPECT_EQ(user.text("answer"), u"half"_s);
    EXPECT_TRUE(user.shows("save"));
    user.press("chip2");
    user.press("stop"); // before anything came: the row goes on waiting
    EXPECT_TRUE(user.shows("waiting"));
    EXPECT_EQ(user.all("save").size(), 1);
}

TEST_F(AskViewTest, AFailureTakesTheQuestionBackAndSaysWhy)
{
    user.press("chip0");
    fail(AIError(AIError::Kind::noKey));
    EXPECT_EQ(user.text("error"), AIError(AIError::Kind::noKey).text());
    EXPECT_LT(user.place("error").bottom(), user.place("chip0").top());
    EXPECT_FALSE(user.shows("question"));
    EXPECT_TRUE(user.shows("hint"));
    user.press("chip0");
    EXPECT_FALSE(user.shows("error"));
}

TEST_F(AskViewTest, ReturnBelongsToTheInputMethodWhileItComposes)
{
    user.type("ok ");
    user.compose("wei");
    user.key(Qt::Key_Return);
    EXPECT_TRUE(session.messages().isEmpty());
    user.commit("为什么");
    user.key(Qt::Key_Return);
    EXPECT_EQ(user.text("question"), u"ok 为什么"_s);
}

TEST_F(AskViewTest, TheFieldGrowsToFiveLinesAndShrinksAgain)
{
    const int one = user.find("input")->height();
    user.type("a");
    user.key(Qt::Key_Return, Qt::ShiftModifier);
    user.type("b");
    EXPECT_EQ(session.input(), u"a\nb"_s);
    const int line = user.find("input")->height() - one;
    EXPECT_EQ(line, theme.points(20));
    for (int i = 0; i < 8; ++i)
        user.key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(user.find("input")->height(), one + 4 * line);
    session.setInput({});
    EXPECT_EQ(user.find("input")->height(), one);
}

TEST_F(AskViewTest, FollowsTheNewestTextUnlessTheUserReadsAbove)
{
    QScrollBar &bar = scrollBar(view);
    user.press("chip0");
    piece(manyLines(40));
    EXPECT_GT(bar.maximum(), 0);
    EXPECT_EQ(bar.value(), bar.maximum());
    bar.setValue(20);
    const int top = user.place("question").top();
    piece(manyLines(5));
    EXPECT_EQ(user.place("question").top(), top);
    end();
    EXPECT_EQ(bar.value(), 20);
    user.press("chip0");
    EXPECT_EQ(bar.value(), bar.maximum());
}

TEST_F(AskViewTest, AGrowingAnswerKeepsWhatIsSelectedInIt)
{
    user.press("chip0");
    piece(u"one two"_s);
    auto *answer = qobject_cast<QTextEdit *>(user.find("answer"));
    QTextCursor cursor = answer->textCursor();
    cursor.setPosition(0);
    cursor.setPosition(3, QTextCursor::KeepAnchor);
    answer->setTextCursor(cursor);
    piece(u" **three**\n\nfour"_s);
    end();
    EXPECT_EQ(answer->textCursor().selectedText(), u"one"_s);
    EXPECT_EQ(answer->toPlainText(), u"one two three\n\nfour"_s);
}

TEST_F(AskViewTest, OnlyALongTextIsCutShort)
{
    EXPECT_FALSE(user.shows("fold"));
    session.start(longContext(), std::nullopt);
    ViewStage::settle();
    EXPECT_TRUE(user.text("original").endsWith(u'…'));
    user.press("fold");
    EXPECT_EQ(user.text("fold"), u"收起"_s);
    EXPECT_EQ(user.text("original"), longContext().original);
    session.start(longContext(), QuickQuestion::why);
    ViewStage::settle();
    EXPECT_EQ(user.text("fold"), u"展开全文"_s);
    EXPECT_EQ(user.text("question"), u"为什么这么用？"_s);
}

} // namespace nimbrelle
