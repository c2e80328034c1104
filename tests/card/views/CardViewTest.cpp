#include "card/views/CardView.h"

#include "ai/AIError.h"
#include "card/views/CardStage.h"
#include "support/Printers.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextBlock>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class CardViewTest : public testing::Test, protected CardStage {
protected:
    static Explanation reluctant()
    {
        Explanation explanation = Notebook::explained("reluctant", "I was reluctant, Reluctant!");
        explanation.meaningZh = u"不情愿的"_s;
        explanation.sentenceZh = u"我不情愿。"_s;
        explanation.definitionEn = u"not willing"_s;
        return explanation;
    }
    QStringList marked(const char *name) const
    {
        QStringList parts;
        const auto *edit = qobject_cast<const QTextEdit *>(find(name));
        const QTextBlock block = edit->document()->begin();
        for (auto fragment = block.begin(); fragment != block.end(); ++fragment)
            if (fragment.fragment().charFormat().fontWeight() == QFont::Bold)
                parts.append(fragment.fragment().text());
        return parts;
    }
};

} // namespace

TEST_F(CardViewTest, ShowsWhatIsWaitedForAndSaysIt)
{
    controller.lookup(u"reluctant"_s, std::nullopt, {640, 600});
    EXPECT_EQ(text("title"), u"reluctant"_s);
    EXPECT_TRUE(shows("spinner"));
    press("speakWord");
    EXPECT_THAT(speaker.said, ElementsAre(u"reluctant"_s));
}

TEST_F(CardViewTest, ABareWordClosesUpAndKeepsTheRestBehindTheFold)
{
    lookup(Notebook::explained("ship"));
    EXPECT_EQ(text("headword"), u"ship"_s);
    EXPECT_EQ(text("register"), u"中性"_s);
    for (const char *absent : {"phonetic", "pos", "sentence", "unlockBanner", "askPrimary", "source"})
        EXPECT_FALSE(find(absent)) << absent;
    const QSize closed = view.fittingSize();
    EXPECT_EQ(text("fold"), u"更多"_s);
    press("fold");
    EXPECT_EQ(text("fold"), u"收起"_s);
    EXPECT_TRUE(shows("askPrimary"));
    EXPECT_EQ(text("source"), u"来自 Firefox · example.org"_s);
    EXPECT_FALSE(find("speakSentence"));
    EXPECT_GT(view.fittingSize().height(), closed.height());
    EXPECT_EQ(panel.frame().size(), QSizeF(view.fittingSize())); // the panel has grown with it
    press("fold");
    EXPECT_EQ(view.fittingSize(), closed);
}

TEST_F(CardViewTest, ATextMayGoWhileItsMenuIsOpen)
{
    lookup(reluctant());
    EXPECT_THAT(marked("sentence"), ElementsAre(u"reluctant"_s, u"Reluctant"_s));
    panel.show();
    auto *sentence = qobject_cast<QTextEdit *>(find("sentence"));
    QContextMenuEvent event(
        QContextMenuEvent::Mouse, QPoint(1, 1), sentence->mapToGlobal(QPoint(1, 1)), Qt::NoModifier);
    QCoreApplication::sendEvent(sentence->viewport(), &event);
    ASSERT_TRUE(QApplication::activePopupWidget());
    controller.update(CardHidden{});
    settle();
    EXPECT_FALSE(QApplication::activePopupWidget());
}

TEST_F(CardViewTest, SavingTurnsTheButtonIntoItsResult)
{
    lookup(reluctant());
    press("save");
    EXPECT_EQ(notebook.store.entries().size(), 1);
    EXPECT_EQ(text("justSaved"), u"已保存"_s);
    EXPECT_FALSE(find("save"));
    press("fold");
    EXPECT_FALSE(find("saveExample")); // it has just been kept
    press("wantToLearn");
    EXPECT_TRUE(notebook.word("reluctant").isWanted());
    EXPECT_EQ(text("wantToLearn"), u"已标想学"_s);
    press("wantToLearn");
    EXPECT_FALSE(notebook.word("reluctant").isWanted());
}

TEST_F(CardViewTest, OnlyWhatIsSeenOfItsWindowTakesTheMouse)
{
    const auto taken = [this] {
        QRect all;
        for (const QRect &piece : std::as_const(windowSystem.visible))
            all |= piece;
        return all;
    };
    lookup(reluctant());
    EXPECT_EQ(taken(), QRect(QPoint(18, 18), panel.frame().size().toSize()));
    EXPECT_FALSE(windowSystem.visible.first().contains(18, 18)) << "its corners are round";
    controller.offerTranslation(u"A long passage."_s, {640, 600});
    settle();
    EXPECT_EQ(taken(), QRect(18, 18, 30, 30));
}

TEST_F(CardViewTest, NothingMovesWhenSaveBecomesSaved)
{
    for (const auto &word : {u"reluctant"_s, u"reluctantly so"_s, u"reluctantly so far"_s,
             u"a very reluctant one"_s, u"not a very reluctant one"_s}) {
        Explanation answer = reluctant();
        answer.headword = word;
        answer.phonetic = u"/rɪˈlʌktənt/"_s;
        lookup(answer);
        const QList<QRect> before{place("headword"), place("phonetic"), place("meaning"), place("register")};
        press("save");
        EXPECT_EQ(QList<QRect>({place("headword"), place("phonetic"), place("meaning"), place("register")}),
            before);
    }
}

TEST_F(CardViewTest, CoversTheMeaningUntilTheUserHasTriedToRemember)
{
    notebook.save("reluctant");
    lookup(reluctant());
    EXPECT_EQ(text("savedCount"), u"第 2 次"_s);
    EXPECT_EQ(text("recallQuestion"), u"你查过 2 次了，先想一想它在这里的意思？"_s);
    EXPECT_TRUE(shows("sentence"));
    EXPECT_FALSE(find("meaning"));
    EXPECT_FALSE(find("sentenceZh"));
    press("fold");
    EXPECT_EQ(text("definition"), u"not willing"_s);
    press("reveal");
    EXPECT_EQ(text("meaning"), u"不情愿的"_s);
    EXPECT_EQ(text("sentenceZh"), u"我不情愿。"_s);
    EXPECT_EQ(text("fold"), u"收起"_s); // the same card still
    press("forgotten");
    EXPECT_EQ(text("verdict"), u"没关系，过一会儿会再考你一次"_s);
    EXPECT_FALSE(find("remembered"));
    lookup(Notebook::explained("next"));
    EXPECT_EQ(text("fold"), u"更多"_s); // a new card begins closed
}

TEST_F(CardViewTest, ATranslationLeadsToItsWordsAndToQuestions)
{
    QSignalSpy asked(&controller, &CardController::askRequested);
    controller.offerTranslation(u"It may turn out flaky."_s, {640, 600});
    settle();
    EXPECT_EQ(view.fittingSize(), QSize(30, 30));
    press("translate");
    EXPECT_EQ(text("note"), u"It may turn out flaky."_s);
    const Translation::KeyTerm term{.text = u"turn out"_s, .meaningZh = u"结果是"_s};
    const TranslationData data{.original = u"It may turn out flaky."_s,
        .translation = {.translationZh = u"可能不稳。"_s, .keyTerms = QList{term}}};
    controller.update(data);
    settle();
    EXPECT_EQ(text("translation"), u"可能不稳。"_s);
    EXPECT_THAT(marked("original"), ElementsAre(u"turn out"_s));
    press("keyTerm");
    EXPECT_EQ(controller.state(), CardState(CardLoading{.selection = u"turn out"_s}));
    controller.update(data);
    settle();
    press("askStructure");
    EXPECT_EQ(asked.size(), 1);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(CardViewTest, OnlyAFailureOfTheKeyOffersTheSettings)
{
    controller.showError({.message = u"没有网络。"_s}, {640, 600});
    settle();
    EXPECT_EQ(text("message"), u"没有网络。"_s);
    EXPECT_FALSE(find("openSettings"));
    controller.showError({.message = u"没有网络。"_s, .needsSettings = true}, {640, 600});
    settle();
    press("openSettings");
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(CardViewTest, NothingInTheCardTakesTheFocusOrGoesWithoutAName)
{
    lookup(reluctant());
    press("fold");
    for (const auto *button : view.findChildren<QPushButton *>()) {
        EXPECT_EQ(button->focusPolicy(), Qt::NoFocus);
        EXPECT_FALSE(button->objectName().isEmpty());
        EXPECT_FALSE(button->accessibleName().isEmpty()) << button->objectName().toStdString();
    }
    EXPECT_TRUE(panel.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_FALSE(panel.isActiveWindow());
}

TEST_F(CardViewTest, ACardTooHighForTheScreenScrollsAndKeepsItsFooterInView)
{
    controller.showTranslation(u"x"_s, {640, 600});
    controller.update(
        TranslationData{.original = QString(6000, u'w'), .translation = {.translationZh = u"译"_s}});
    settle();
    const QRectF work = screens.all().first().workArea;
    EXPECT_LE(panel.frame().height(), work.height());
    const QWidget *footer = find("askWhy");
    EXPECT_TRUE(view.rect().contains(QRect(footer->mapTo(&view, QPoint(0, 0)), footer->size())));
}

} // namespace nimbrelle
