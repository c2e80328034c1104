#include "review/views/ReviewView.h"

#include "review/views/ReviewStage.h"

#include <QClipboard>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class ReviewViewTest : public testing::Test, protected ReviewStage {
protected:
    void say(const char *typed)
    {
        user().type(typed);
        user().key(Qt::Key_Return);
    }
};

} // namespace

TEST_F(ReviewViewTest, ARoundOfRecognitionIsPlayedByKeys)
{
    open({due("reluctant", 1), due("walk", 9)});
    session->start(0);
    settle();
    EXPECT_EQ(text("progressText"), u"1 / 2"_s);
    EXPECT_EQ(text("badge"), u"认"_s);
    EXPECT_EQ(text("prompt"), u"它在这里是什么意思？先在心里想一想"_s);
    EXPECT_EQ(text("revealHint"), u"按空格看答案"_s);
    EXPECT_FALSE(shows("meaning"));
    EXPECT_FALSE(shows("sentenceZh"));
    user().press("speakWord");
    EXPECT_THAT(speaker.said, ElementsAre(u"reluctant"_s));
    user().key(Qt::Key_1); // nothing to judge yet
    EXPECT_TRUE(shows("reveal"));

    const QRect slip = place("slip"), word = place("headword"), sentence = place("sentence");
    user().key(Qt::Key_Space);
    EXPECT_EQ(text("meaning"), u"不情愿的，犹豫的"_s);
    EXPECT_EQ(text("definition"), u"not wanting to do something"_s);
    EXPECT_EQ(text("sentenceZh"), u"我不愿意。"_s);
    EXPECT_EQ(text("phonetic"), u"/x/"_s);
    EXPECT_EQ(text("rate2"), u"有点费劲"_s);
    EXPECT_EQ(place("headword"), word);
    EXPECT_EQ(place("sentence"), sentence);
    EXPECT_LE(place("definition").bottom(), slip.bottom());
    EXPECT_EQ(place("meaning").top(), slip.top());

    user().key(Qt::Key_3);
    EXPECT_EQ(text("progressText"), u"2 / 3"_s); // the word is typed at once
    EXPECT_EQ(text("badge"), u"拼"_s);
    EXPECT_FALSE(user().hasFocus("answerField"));
    focus();
    EXPECT_TRUE(user().hasFocus("answerField"));
    say("reluctant");
    EXPECT_EQ(text("proceed"), u"按回车继续"_s);
    clock.advance(1200ms); // what is simply right goes on by itself
    settle();
    EXPECT_EQ(text("headword"), u"walk"_s);
    user().press("reveal");
    user().press("rate2");
    EXPECT_EQ(text("title"), u"这一轮做完了"_s);
    EXPECT_EQ(text("figures"), u"记住了 2 个 · 还要再练 0 个 · 拼对 1 个"_s);
    EXPECT_EQ(text("comfort"), u"忘了的词会安排在快要忘的时候再出现，不用担心。"_s);
    EXPECT_FALSE(shows("again"));
    QSignalSpy closed(view.get(), &ReviewView::closed);
    user().press("close");
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(ReviewViewTest, AMistakeIsCopiedWhereItWasTyped)
{
    openSpelling({practised("deprecate", SpellMode::fill), practised("run", SpellMode::fill)});
    EXPECT_EQ(text("scaffold"), u"depr_c_te"_s);
    EXPECT_EQ(text("meaning"), u"不情愿的，犹豫的"_s);
    EXPECT_EQ(text("keys"), u"回车提交 · Tab 送一个字母 · 空着提交 = 不会"_s);
    user().type("depra");
    EXPECT_TRUE(text("slots").contains(u"a（错）"_s));
    const QRect boxes = place("slots"), field = place("answerField");
    user().key(Qt::Key_Return);
    EXPECT_EQ(text("message"), u"跟着打一遍，手会记住它"_s);
    EXPECT_EQ(text("invitation"), u"照着打一遍 deprecate（可以跳过）"_s);
    EXPECT_EQ(place("slots").topLeft(), boxes.topLeft());
    EXPECT_EQ(place("copyField").topLeft(), field.topLeft());
    EXPECT_EQ(speaker.said, QStringList{u"deprecate"_s});
    focus();
    user().type("depr");
    EXPECT_EQ(session->copyInput(), u"depr"_s);
    session->changed(); // as when the notebook changes meanwhile
    EXPECT_TRUE(user().hasFocus("copyField"));
    user().key(Qt::Key_Return); // whatever was typed
    EXPECT_EQ(text("progressText"), u"2 / 3"_s);
    focus();
    user().key(Qt::Key_Return); // nothing typed: not known
    EXPECT_EQ(text("message"), u"没关系，跟着打一遍就好"_s);
    focus();
    user().key(Qt::Key_Return);
    EXPECT_EQ(text("progressText"), u"3 / 4"_s);
    EXPECT_EQ(text("prompt"), u"看一眼再写 · 记住它的样子，消失后把它打出来"_s); // one rung lower
}

TEST_F(ReviewViewTest, TheWordToCopyIsHiddenAfterAWhileOrAtTheFirstLetter)
{
    openSpelling({practised("reluctant", SpellMode::copy), practised("walk", SpellMode::copy)});
    EXPECT_EQ(text("word"), u"reluctant"_s);
    clock.advance(2469ms);
    EXPECT_EQ(text("word"), u"reluctant"_s);
    const QRect shown = place("word");
    clock.advance(1ms);
    EXPECT_EQ(text("word"), u"•••••••••"_s);
    EXPECT_EQ(place("word"), shown);
    say("reluctant");
    clock.advance(1200ms);
    settle();
    focus();
    EXPECT_EQ(text("word"), u"walk"_s);
    user().type("w");
    EXPECT_EQ(text("word"), u"••••"_s);
    user().key(Qt::Key_Backspace);
    clock.advance(3s);
    EXPECT_EQ(text("word"), u"••••"_s);
}

TEST_F(ReviewViewTest, TabGivesALetterAndStaysInTheField)
{
    openSpelling({practised("walk", SpellMode::fill)});
    user().type("wx");
    user().key(Qt::Key_Tab);
    EXPECT_EQ(text("answerField"), u"wa"_s);
    EXPECT_TRUE(user().hasFocus("answerField"));
    say("lk");
    EXPECT_EQ(text("message"), u"用了 1 次提示，也算拼出来了"_s);
    EXPECT_TRUE(shows("proceed"));
    clock.advance(5s); // a remark is read at leisure
    settle();
    EXPECT_TRUE(shows("proceed"));
    user().key(Qt::Key_Return);
    EXPECT_EQ(text("figures"), u"拼对 1 次"_s);
}

TEST_F(ReviewViewTest, WhatIsTypedBesideTheFieldReachesIt)
{
    openSpelling({practised("walk", SpellMode::fill), practised("run", SpellMode::fill)});
    QTest::mouseClick(user().find("prompt"), Qt::LeftButton);
    EXPECT_TRUE(user().hasFocus("answerField"));
    user().find("giveUp")->setFocus(Qt::TabFocusReason);
    user().type("w");
    user().type("x");
    EXPECT_EQ(text("answerField"), u"wx"_s);
    user().find("giveUp")->setFocus(Qt::TabFocusReason);
    user().key(Qt::Key_Return);
    focus();
    user().key(Qt::Key_Tab);
    EXPECT_FALSE(user().hasFocus("copyField"));
    user().key(Qt::Key_Return);
    EXPECT_EQ(text("progressText"), u"2 / 3"_s);
}

TEST_F(ReviewViewTest, AMemoryAidIsInViewAfterAMiss)
{
    WordEntry missed = practised("deprecate", SpellMode::fill);
    missed.definitionEn = u"to say that something should no longer be used, and will go away"_s;
    missed.examples.first().sentence = QStringList(4, u"The method was deprecated in 3.2."_s).join(u' ');
    missed.mnemonic = u"de- 是往下，prec 是价钱：价钱往下走，就不推荐了。"_s;
    openSpelling({missed});
    say("x");
    const auto &seen = user().at<QScrollArea>("questionScroll");
    const QWidget &aid = user().at("mnemonic");
    EXPECT_LE(aid.mapTo(&seen, aid.rect().bottomLeft()).y(), seen.height());
}

TEST_F(ReviewViewTest, WhatAnInputMethodComposesIsNoAnswer)
{
    openSpelling({practised("walk", SpellMode::fill)});
    user().compose("wa'l'k");
    user().key(Qt::Key_Return);
    user().key(Qt::Key_Tab);
    EXPECT_TRUE(shows("answerField"));
    EXPECT_EQ(session->input(), QString());
    EXPECT_EQ(session->hintsUsed(), 0);
    user().commit("walk");
    user().key(Qt::Key_Return);
    EXPECT_TRUE(shows("proceed"));
}

TEST_F(ReviewViewTest, ASelectedTextIsCopiedByKeyAndStillLetsTheRoundsKeysThrough)
{
    open({due("reluctant")});
    session->start(0);
    settle();
    auto *sentence = qobject_cast<QTextEdit *>(user().find("sentence"));
    const QPoint inFirstWord = QPoint(3, 8);
    QTest::mouseClick(sentence->viewport(), Qt::LeftButton, {}, inFirstWord);
    EXPECT_FALSE(user().hasFocus("sentence")); // nothing to copy yet
    QTest::mouseDClick(sentence->viewport(), Qt::LeftButton, {}, inFirstWord);
    user().key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"I"_s);
    EXPECT_TRUE(user().hasFocus("sentence"));
    user().key(Qt::Key_Space);
    EXPECT_TRUE(shows("meaning"));
}

TEST_F(ReviewViewTest, ALongAnswerIsScrolledByKeys)
{
    WordEntry word = due("reluctant");
    word.meaningZh = QStringList(40, u"不情愿的，犹豫的"_s).join(u'\n');
    open({word});
    session->start(0);
    user().key(Qt::Key_Space);
    const QScrollBar &bar = *view->findChild<QScrollArea *>(u"questionScroll"_s)->verticalScrollBar();
    ASSERT_GT(bar.maximum(), bar.pageStep());
    user().key(Qt::Key_PageDown);
    EXPECT_EQ(bar.value(), bar.pageStep());
    user().key(Qt::Key_End);
    EXPECT_EQ(bar.value(), bar.maximum());
    user().key(Qt::Key_PageUp);
    EXPECT_EQ(bar.value(), bar.maximum() - bar.pageStep());
    user().key(Qt::Key_Home);
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(ReviewViewTest, AClosedWindowNeitherGoesOnNorSpeaks)
{
    openSpelling({practised("walk", SpellMode::dictation), practised("run", SpellMode::dictation)});
    say("walk");
    speaker.said.clear();
    view->close();
    clock.advance(5s);
    EXPECT_EQ(session->index(), 0);
    EXPECT_EQ(speaker.said, QStringList());
    session->startSpelling(); // as whoever shows the window does first
    const QWidget *old = view->findChild<QWidget *>(u"proceed"_s);
    EXPECT_TRUE(old); // nobody looks, so nothing was made anew
    view->show();
    settle();
    EXPECT_FALSE(shows("proceed"));
    EXPECT_EQ(text("badge"), u"听"_s);
}

TEST_F(ReviewViewTest, AKeyHeldDownAnswersNothingMore)
{
    openSpelling({practised("walk", SpellMode::fill), practised("run", SpellMode::fill)});
    say("walk");
    const auto hold = [this] {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
        QCoreApplication::sendEvent(user().focused(), &held);
        settle();
    };
    hold();
    EXPECT_TRUE(shows("proceed"));
    user().key(Qt::Key_Return);
    focus();
    hold();
    EXPECT_TRUE(shows("answerField"));
}

TEST_F(ReviewViewTest, ADictationCanBeHeardAgain)
{
    openSpelling({practised("walk", SpellMode::dictation)});
    EXPECT_EQ(text("badge"), u"听"_s);
    EXPECT_EQ(text("speakAgainKey"), u"Ctrl+R"_s);
    EXPECT_FALSE(shows("meaning"));
    EXPECT_EQ(speaker.said.size(), 1);
    user().key(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(speaker.said.size(), 2);
    user().press("speakAgain");
    EXPECT_THAT(speaker.said, ElementsAre(u"walk"_s, u"walk"_s, u"walk"_s));
    EXPECT_EQ(text("answerField"), QString());
    user().press("giveUp");
    EXPECT_EQ(text("message"), u"没关系，跟着打一遍就好"_s);
}

TEST_F(ReviewViewTest, AHardWordCanRestAndTakesItsRepeatWithIt)
{
    configure([](AppConfig &config) { config.leechThreshold = 2; });
    open({due("hard", 1, 1), due("walk", 9)});
    session->start(0);
    user().press("reveal");
    EXPECT_FALSE(shows("restWord"));
    user().press("rate1");
    EXPECT_EQ(text("progressText"), u"1 / 3"_s); // asked again at the end
    EXPECT_EQ(text("outcomeText"),
        u"这个词有点难啃，硬背效果不好。AI 正在帮你想一个跟你有关的记法，下次出现时会显示。"_s);
    EXPECT_EQ(text("restWord"), u"先让它休息一周"_s);
    EXPECT_EQ(text("next"), u"下一题"_s);
    user().press("restWord");
    EXPECT_EQ(text("progressText"), u"2 / 2"_s);
    configure([](AppConfig &config) { config.leechThreshold = 0; });
    user().press("reveal");
    EXPECT_EQ(text("restWord"), u"这个词太难了，先休息一周"_s);
}

TEST_F(ReviewViewTest, AMemoryAidThatArrivesIsShownAtOnce)
{
    open({due("walk")});
    session->start(0);
    user().press("reveal");
    EXPECT_FALSE(shows("mnemonic"));
    SyncBundle bundle = liveWords->snapshot();
    bundle.words.first().mnemonic = u"走来走去"_s;
    liveWords->applySync(bundle);
    settle();
    EXPECT_EQ(text("mnemonic"), u"走来走去"_s);
    EXPECT_TRUE(shows("rate1"));
}

TEST_F(ReviewViewTest, AnEmptyRoundSaysWhyAndOffersMore)
{
    open({});
    EXPECT_EQ(text("title"), u"生词本还是空的"_s);
    WordEntry seen = word("walk");
    WordEntry later = due("run");
    later.review->due = clock.now() + 48h;
    configure([](AppConfig &config) { config.dailyNewLimit = 0; });
    open({later, seen});
    session->start(0);
    settle();
    EXPECT_EQ(text("title"), u"现在没有要复习的词"_s);
    EXPECT_EQ(text("line"), u"在学 1/30 · 记忆最需要的是间隔，过一阵再来效果更好。"_s);
    EXPECT_EQ(text("more"), u"想多学？再加 5 个新词"_s);
    user().press("more");
    EXPECT_EQ(text("headword"), u"walk"_s);
    session->startSpelling();
    settle();
    EXPECT_EQ(text("title"), u"还没有常拼的词"_s);
}

TEST_F(ReviewViewTest, ASpellingRoundCanBeginAgain)
{
    openSpelling({practised("walk", SpellMode::copy)});
    say("walk");
    user().key(Qt::Key_Return);
    EXPECT_EQ(text("levelUps"), u"拼写升级：walk"_s);
    EXPECT_FALSE(shows("comfort"));
    user().press("again");
    EXPECT_EQ(text("progressText"), u"1 / 1"_s);
    EXPECT_EQ(text("prompt"), u"补字母 · 把空着的字母补上（打完整个词）"_s);
}

TEST_F(ReviewViewTest, FourRatingsStandTwoByTwoWhereTheyDoNotFit)
{
    open({due("walk")});
    session->start(0);
    user().press("reveal");
    EXPECT_EQ(place("rate1").top(), place("rate4").top());
    view->resize(theme.points(300), theme.points(480));
    settle();
    EXPECT_EQ(view->width(), theme.points(300));
    EXPECT_EQ(place("rate1").top(), place("rate2").top());
    EXPECT_GT(place("rate3").top(), place("rate1").bottom());
    EXPECT_EQ(place("rate3").left(), place("rate1").left());
    EXPECT_LE(place("rate4").right(), view->width());
}

} // namespace nimbrelle
