#include "card/CardController.h"

#include "ai/AIError.h"
#include "card/CardPanel.h"
#include "support/FakeAIClient.h"
#include "support/FakeDesktop.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class FakePanel final : public CardPanel {
public:
    QSizeF fittingSize(QSizeF) override { return size; }
    void place(const QRectF &frame) override { placed = frame; }
    void bringToFront() override { visible = true; }
    void orderOut() override { visible = false; }
    bool isVisible() const override { return visible; }
    QRectF frame() const override { return placed; }

    QSizeF size{340, 200};
    QRectF placed;
    bool visible = false;
};

} // namespace

class CardControllerTest : public testing::Test {
protected:
    CardControllerTest()
    {
        QObject::connect(&card, &CardController::askRequested,
            [this](const AskContext &context, std::optional<QuickQuestion> question) {
                EXPECT_FALSE(card.isVisible());
                asked.append({context, question});
            });
        QObject::connect(&card, &CardController::settingsRequested, [this] { ++settingsRequests; });
    }

    void lookup(const char *word, const QString &context = QStringLiteral("the sentence"))
    {
        card.lookup(QString::fromUtf8(word), context, {640, 400});
    }
    void lookupAndAnswer(const char *word)
    {
        lookup(word);
        ai.reply(Notebook::explained(word, "A sentence."));
    }
    template <class Payload> const Payload &shown() const
    {
        if (!std::holds_alternative<Payload>(card.state()))
            throw std::runtime_error("the card shows something else");
        return std::get<Payload>(card.state());
    }
    QString headword() const { return shown<WordCardData>().explanation.headword; }
    RecallState::Kind recall() const { return shown<WordCardData>().recall.kind; }

    Notebook notebook;
    FakeAI ai;
    FakeScreens screens;
    FakePanel panel;
    QList<CardState> stateAtSource; ///< what the card showed whenever the source was asked for
    QList<std::pair<AskContext, std::optional<QuickQuestion>>> asked;
    int settingsRequests = 0;
    PageSource source = Notebook::page("https://example.org/a");
    CardController card{
        notebook.clock, notebook.config, notebook.store, ai.factory(), screens, panel, [this] {
            EXPECT_TRUE(panel.visible);
            stateAtSource.append(card.state());
            return source;
        }};
};

TEST_F(CardControllerTest, ShowsTheLoadingCardBeforeItAsksForTheSource)
{
    lookup("reluctant");
    EXPECT_THAT(stateAtSource, ElementsAre(CardState(CardLoading{QStringLiteral("reluctant")})));
    EXPECT_EQ(panel.placed, QRectF(616, 182, 340, 200));
    EXPECT_EQ(ai.calls().first().arguments,
        (QStringList{QStringLiteral("reluctant"), QStringLiteral("the sentence")}));
    source = {}; // what is in front by the time of the answer does not matter
    ai.reply(Notebook::explained("reluctant", "I was reluctant."));
    const WordCardData expected{.selection = QStringLiteral("reluctant"),
        .explanation = Notebook::explained("reluctant", "I was reluctant."),
        .source = Notebook::page("https://example.org/a")};
    EXPECT_EQ(shown<WordCardData>(), expected);
    EXPECT_TRUE(notebook.store.entries().isEmpty()); // saved only at the user's request
}

TEST_F(CardControllerTest, TheSameWordInTheSameSentenceCostsOneExchange)
{
    const QString start(300, u'x');
    card.lookup(QStringLiteral("Run"), start + u'a', {});
    ai.reply(Notebook::explained("run"));
    card.lookup(QStringLiteral("run"), start + u'b', {}); // differs only after the 300th character
    EXPECT_EQ(headword(), QStringLiteral("run"));
    EXPECT_EQ(shown<WordCardData>().selection, QStringLiteral("run"));
    EXPECT_EQ(ai.calls().size(), 1);
    card.lookup(QStringLiteral("run"), start.left(299) + u'y', {});
    card.lookup(QStringLiteral("run"), std::nullopt, {});
    EXPECT_EQ(ai.calls().size(), 3);
}

TEST_F(CardControllerTest, ALateAnswerGoesToTheCacheAndNowhereElse)
{
    lookup("first");
    lookup("second");
    EXPECT_EQ(ai.waiting(), 2); // the first exchange runs on
    ai.reply(Notebook::explained("first"), 0);
    EXPECT_EQ(shown<CardLoading>().selection, QStringLiteral("second"));
    ai.reply(Notebook::explained("second"));
    EXPECT_EQ(headword(), QStringLiteral("second"));
    card.hide();
    lookup("first");
    EXPECT_EQ(headword(), QStringLiteral("first"));
    EXPECT_EQ(ai.calls().size(), 2);
}

TEST_F(CardControllerTest, AHiddenCardStaysHiddenWhateverComes)
{
    notebook.save("word");
    lookup("word");
    card.hide();
    ai.reply(Notebook::explained("word"));
    EXPECT_EQ(card.state(), CardState(CardHidden{}));
    EXPECT_FALSE(panel.visible);
    EXPECT_EQ(notebook.word("word").lookupCount, 1); // a meeting that nobody saw
    lookup("other");
    card.hide();
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_EQ(card.state(), CardState(CardHidden{}));
    lookup("other");
    EXPECT_EQ(ai.calls().size(), 3); // a failure leaves no trace in the cache
}

TEST_F(CardControllerTest, WhatIsUnderWayEndsWithTheController)
{
    auto brief = std::make_unique<CardController>(notebook.clock, notebook.config, notebook.store,
        ai.factory(), screens, panel, [] { return PageSource(); });
    brief->lookup(QStringLiteral("a"), std::nullopt, {});
    brief->offerTranslation(QStringLiteral("b"), {});
    brief->translate(QStringLiteral("b"));
    brief->lookup(QStringLiteral("c"), std::nullopt, {});
    EXPECT_EQ(ai.waiting(), 2);
    brief.reset();
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(panel.placed, QRectF(8, 18, 340, 200)); // nothing was shown on the way out
    notebook.clock.advance(10s);
}

TEST_F(CardControllerTest, FoldsTheMeetingWithASavedWordIn)
{
    notebook.save("run");
    lookup("ran");
    ai.reply(Notebook::explained("run"));
    EXPECT_EQ(shown<WordCardData>().savedLookupCount, 2);
    EXPECT_TRUE(shown<WordCardData>().unlock.has_value());
    EXPECT_EQ(notebook.word("run").sourceKeys, QStringList{QStringLiteral("example.org")});
    lookup("ran"); // from the cache, and still a meeting
    EXPECT_EQ(shown<WordCardData>().savedLookupCount, 3);
    lookup("new");
    ai.reply(Notebook::explained("new"));
    EXPECT_EQ(shown<WordCardData>().savedLookupCount, std::nullopt);
    EXPECT_EQ(shown<WordCardData>().unlock, std::nullopt);
    EXPECT_EQ(recall(), RecallState::Kind::off);
}

TEST_F(CardControllerTest, CoversTheMeaningOfAKnownWordUnlessItWasJustReviewed)
{
    const QUuid id = notebook.save("run");
    lookupAndAnswer("run");
    EXPECT_EQ(recall(), RecallState::Kind::hidden);
    notebook.store.applyReview(id, Rating::good, LogKind::review);
    notebook.clock.advance(3599s);
    lookup("run");
    EXPECT_EQ(recall(), RecallState::Kind::off);
    notebook.clock.advance(1s);
    lookup("run");
    EXPECT_EQ(recall(), RecallState::Kind::hidden);
    notebook.configure([](AppConfig &config) { config.recallOnLookup = false; });
    lookup("run");
    EXPECT_EQ(recall(), RecallState::Kind::off);
}

TEST_F(CardControllerTest, ARecallOnTheCardCountsAsOneReview)
{
    for (const bool remembered : {true, false}) {
        const char *word = remembered ? "kept" : "lost";
        notebook.save(word);
        lookupAndAnswer(word);
        card.rateRecall(remembered); // not before the meaning was shown
        EXPECT_FALSE(notebook.word(word).review);
        card.revealRecall();
        EXPECT_EQ(recall(), RecallState::Kind::revealed);
        card.rateRecall(remembered);
        EXPECT_EQ(shown<WordCardData>().recall, (RecallState{RecallState::Kind::done, remembered}));
        EXPECT_EQ(notebook.word(word).review->lapses, remembered ? 0 : 1);
        card.rateRecall(remembered);
        EXPECT_EQ(notebook.word(word).review->reps, 1);
    }
    EXPECT_EQ(notebook.events().last(), QStringLiteral("review lost again"));
}

TEST_F(CardControllerTest, RatingADeletedWordLeavesTheCardAsItIs)
{
    const QUuid id = notebook.save("run");
    lookupAndAnswer("run");
    card.revealRecall();
    notebook.store.remove(id);
    card.rateRecall(true);
    EXPECT_EQ(recall(), RecallState::Kind::revealed);
}

TEST_F(CardControllerTest, SavesTheWordOfTheCard)
{
    card.save(); // nothing to save yet
    lookupAndAnswer("run");
    card.save();
    EXPECT_TRUE(shown<WordCardData>().justSaved);
    EXPECT_EQ(shown<WordCardData>().savedLookupCount, 1);
    EXPECT_TRUE(shown<WordCardData>().unlock->newForm);
    EXPECT_EQ(notebook.word("run").examples.first().sourceURL, QStringLiteral("https://example.org/a"));
    const auto unlock = shown<WordCardData>().unlock;
    card.save(); // an empty reward does not replace the first
    EXPECT_EQ(shown<WordCardData>().unlock, unlock);
    EXPECT_EQ(notebook.store.entries().size(), 1);
}

TEST_F(CardControllerTest, OnlyAMissingOrWrongKeyLeadsToTheSettings)
{
    const std::pair<AIError, bool> cases[]{{AIError(AIError::Kind::noKey), true},
        {AIError(AIError::Kind::unauthorized), true}, {AIError(AIError::Kind::noBalance), false},
        {AIError(AIError::Kind::badResponse), false}, {AIError::ofStatus(500, QStringLiteral("x")), false}};
    for (const auto &[error, needsSettings] : cases) {
        lookup("word");
        ai.fail(error);
        EXPECT_EQ(shown<CardError>(), (CardError{error.text(), needsSettings}));
        card.openSettings();
        EXPECT_EQ(card.isVisible(), !needsSettings);
    }
    EXPECT_EQ(settingsRequests, 2);
    card.offerTranslation(QStringLiteral("text"), {});
    card.translate(QStringLiteral("text"));
    ai.fail(AIError(AIError::Kind::noKey));
    EXPECT_TRUE(shown<CardError>().needsSettings);
}

TEST_F(CardControllerTest, AnOfferGoesAfterFourSecondsUnlessItWasTakenUp)
{
    card.offerTranslation(QStringLiteral("a text"), {640, 400});
    notebook.clock.advance(3999ms);
    EXPECT_TRUE(card.isVisible());
    notebook.clock.advance(1ms);
    EXPECT_EQ(card.state(), CardState(CardHidden{}));

    card.offerTranslation(QStringLiteral("a text"), {640, 400});
    notebook.clock.advance(3s);
    card.offerTranslation(QStringLiteral("another"), {640, 400}); // has its own four seconds
    notebook.clock.advance(3s);
    EXPECT_TRUE(card.isVisible());
    card.translate(QStringLiteral("another"));
    notebook.clock.advance(10s);
    EXPECT_EQ(shown<Translating>().text, QStringLiteral("another"));
    ai.reply(Translation{QStringLiteral("译文"), std::nullopt});
    EXPECT_EQ(
        shown<TranslationData>(), (TranslationData{QStringLiteral("another"), {QStringLiteral("译文"), {}}}));
}

TEST_F(CardControllerTest, AFramedTextIsTranslatedAtOnceAndStoppedWithTheCard)
{
    card.showTranslation(QStringLiteral("framed"), {100, 700});
    EXPECT_THAT(stateAtSource, ElementsAre(CardState(Translating{QStringLiteral("framed")})));
    EXPECT_EQ(panel.placed.topLeft(), QPointF(76, 482));
    card.hide();
    EXPECT_EQ(ai.waiting(), 0); // a translation nobody waits for ends on the network too
    EXPECT_EQ(card.state(), CardState(CardHidden{}));
    card.showTranslation(QStringLiteral("framed"), {});
    lookup("word");
    EXPECT_EQ(ai.waiting(), 1);
    EXPECT_EQ(shown<CardLoading>().selection, QStringLiteral("word"));
}

TEST_F(CardControllerTest, AQuestionTakesTheSentenceAlong)
{
    card.ask(QuickQuestion::why);
    EXPECT_TRUE(asked.isEmpty());
    lookup("ran");
    Explanation explanation = Notebook::explained("run", "He ran.");
    explanation.sentenceZh = QStringLiteral("他跑了。");
    ai.reply(explanation);
    card.ask(QuickQuestion::why);
    EXPECT_EQ(asked.last().first,
        (AskContext{
            QStringLiteral("He ran."), explanation.sentenceZh, QStringLiteral("run"), explanation, source}));
    EXPECT_EQ(asked.last().second, QuickQuestion::why);

    lookup("bare");
    ai.reply(Notebook::explained("bare", ""));
    card.ask(std::nullopt);
    EXPECT_EQ(asked.last().first.original, QStringLiteral("bare"));

    card.showTranslation(QStringLiteral("framed"), {});
    ai.reply(Translation{QStringLiteral("译文"), std::nullopt});
    source = {};
    card.ask(QuickQuestion::structure);
    EXPECT_EQ(asked.last().first,
        (AskContext{QStringLiteral("framed"), QStringLiteral("译文"), std::nullopt, std::nullopt,
            Notebook::page("https://example.org/a")}));
}

TEST_F(CardControllerTest, AnErrorOfAGestureReplacesWhatWasUnderWay)
{
    card.showTranslation(QStringLiteral("framed"), {});
    card.showError({QStringLiteral("框里没有识别到英文。"), false}, {640, 400});
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(shown<CardError>().message, QStringLiteral("框里没有识别到英文。"));
    EXPECT_EQ(card.anchor(), QPointF(640, 400));
    EXPECT_TRUE(panel.visible);
}

TEST_F(CardControllerTest, PlacesThePanelNowAndAgainWhenTheViewHasSettled)
{
    panel.size = {};
    lookup("word");
    EXPECT_EQ(panel.placed, QRectF()); // a view without a size is not placed
    panel.size = {340, 100};
    QCoreApplication::processEvents();
    EXPECT_EQ(panel.placed, QRectF(616, 282, 340, 100));
    panel.size = {340, 300};
    card.refreshLayout();
    EXPECT_EQ(panel.placed.height(), 100);
    QCoreApplication::processEvents();
    EXPECT_EQ(panel.placed, QRectF(616, 82, 340, 300));
}

TEST_F(CardControllerTest, AnAnchorOnNoScreenFallsToTheMainOne)
{
    screens.screens.append(Screen{2, {1280, 0, 1000, 800}, {1280, 0, 1000, 800}, 1});
    card.showError({}, {1800, 400});
    EXPECT_EQ(panel.placed.topLeft(), QPointF(1776, 182));
    card.showError({}, {5000, 400});
    EXPECT_EQ(panel.placed.topLeft(), QPointF(932, 182));
    screens.screens.clear();
    card.showError({}, {640, 400});
    EXPECT_EQ(panel.placed.topLeft(), QPointF(-348, -208));
}

} // namespace nimbrelle
