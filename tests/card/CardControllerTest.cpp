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

using namespace Qt::StringLiterals;
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

    void lookup(const char *word, const QString &context = u"the sentence"_s)
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
    QCoro::Task<PageSource> tellSource()
    {
        EXPECT_TRUE(panel.visible);
        stateAtSource.append(card.state());
        const PageSource told = source;
        if (sourceDelay.count() > 0)
            co_await notebook.clock.sleep(sourceDelay, std::stop_token());
        co_return told;
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
    std::chrono::milliseconds sourceDelay{0};
    CardController card{notebook.clock, notebook.config, notebook.store, ai.factory(), screens, panel,
        [this](std::stop_token) { return tellSource(); }};
};

TEST_F(CardControllerTest, ShowsTheLoadingCardBeforeItAsksForTheSource)
{
    lookup("reluctant");
    EXPECT_THAT(stateAtSource, ElementsAre(CardState(CardLoading{.selection = u"reluctant"_s})));
    EXPECT_EQ(panel.placed, QRectF(616, 182, 340, 200));
    EXPECT_EQ(ai.calls().first().arguments, (QStringList{u"reluctant"_s, u"the sentence"_s}));
    source = {}; // what is in front by the time of the answer does not matter
    ai.reply(Notebook::explained("reluctant", "I was reluctant."));
    const WordCardData expected{.selection = u"reluctant"_s,
        .explanation = Notebook::explained("reluctant", "I was reluctant."),
        .source = Notebook::page("https://example.org/a")};
    EXPECT_EQ(shown<WordCardData>(), expected);
    EXPECT_TRUE(notebook.store.entries().isEmpty()); // saved only at the user's request
}

TEST_F(CardControllerTest, AsksTheProviderWhileTheSourceIsStillBeingAnswered)
{
    sourceDelay = 300ms;
    notebook.save("run");
    lookup("ran");
    ai.reply(Notebook::explained("run"));
    EXPECT_EQ(shown<CardLoading>().selection, u"ran"_s);
    lookup("next");
    ai.reply(Notebook::explained("next"));
    notebook.clock.advance(300ms);
    EXPECT_EQ(shown<WordCardData>().source, source);
    EXPECT_EQ(headword(), u"next"_s);
    EXPECT_EQ(notebook.word("run").lookupCount, 1) << "a meeting that nobody saw";

    card.showTranslation(u"older"_s, {});
    sourceDelay = 100ms;
    source = Notebook::page("https://example.org/newer");
    card.showTranslation(u"newer"_s, {});
    ai.reply(Translation{.translationZh = u"新"_s});
    notebook.clock.advance(300ms);
    card.ask(std::nullopt);
    EXPECT_EQ(asked.last().first.source, source);
}

TEST_F(CardControllerTest, TheSameWordInTheSameSentenceCostsOneExchange)
{
    const QString start(300, u'x');
    lookup("Run", start + u'a');
    ai.reply(Notebook::explained("run"));
    lookup("run", start + u'b'); // differs only after the 300th character
    EXPECT_EQ(shown<WordCardData>().selection, u"run"_s);
    EXPECT_EQ(ai.calls().size(), 1);
    lookup("run", start.left(299) + u'y');
    card.lookup(u"run"_s, std::nullopt, {});
    EXPECT_EQ(ai.calls().size(), 3);
}

TEST_F(CardControllerTest, ALateAnswerGoesToTheCacheAndNowhereElse)
{
    notebook.save("first");
    lookup("first");
    lookup("second");
    EXPECT_EQ(ai.waiting(), 2) << "the first exchange runs on";
    ai.reply(Notebook::explained("first"), 0);
    EXPECT_EQ(shown<CardLoading>().selection, u"second"_s);
    EXPECT_EQ(notebook.word("first").lookupCount, 1) << "a meeting that nobody saw";
    card.hide();
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_EQ(card.state(), CardState(CardHidden{}));
    EXPECT_FALSE(panel.visible);
    lookup("first");
    EXPECT_EQ(headword(), u"first"_s);
    EXPECT_EQ(ai.calls().size(), 2);
    lookup("second");
    EXPECT_EQ(ai.calls().size(), 3) << "a failure is not cached";
}

TEST_F(CardControllerTest, WhatIsUnderWayEndsWithTheController)
{
    auto brief =
        std::make_unique<CardController>(notebook.clock, notebook.config, notebook.store, ai.factory(),
            screens, panel, [](std::stop_token) -> QCoro::Task<PageSource> { co_return PageSource(); });
    brief->lookup(u"a"_s, std::nullopt, {});
    brief->lookup(u"c"_s, std::nullopt, {});
    brief->offerTranslation(u"b"_s, {});
    EXPECT_EQ(ai.waiting(), 2);
    panel.placed = {};
    brief.reset();
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(panel.placed, QRectF()) << "nothing is shown on the way out";
    notebook.clock.advance(10s);
}

TEST_F(CardControllerTest, FoldsTheMeetingWithASavedWordIn)
{
    notebook.save("run");
    lookup("ran");
    ai.reply(Notebook::explained("run"));
    EXPECT_TRUE(shown<WordCardData>().unlock.has_value());
    EXPECT_EQ(notebook.word("run").sourceKeys, QStringList{u"example.org"_s});
    lookup("ran"); // from the cache, and still a meeting
    EXPECT_EQ(shown<WordCardData>().savedLookupCount, 3);
    lookupAndAnswer("new");
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
        card.rateRecall(remembered);
        EXPECT_EQ(shown<WordCardData>().recall,
            (RecallState{.kind = RecallState::Kind::done, .remembered = remembered}));
        card.rateRecall(remembered);
        EXPECT_EQ(notebook.word(word).review->reps, 1);
        EXPECT_EQ(notebook.word(word).review->lapses, remembered ? 0 : 1);
    }
    EXPECT_EQ(notebook.events().last(), u"review lost again"_s);

    const QUuid id = notebook.save("deleted");
    lookupAndAnswer("deleted");
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
    EXPECT_EQ(shown<WordCardData>().savedLookupCount, 1);
    EXPECT_EQ(notebook.word("run").examples.first().sourceURL, u"https://example.org/a"_s);
    const auto unlock = shown<WordCardData>().unlock;
    EXPECT_TRUE(unlock->newForm);
    card.save();
    EXPECT_EQ(shown<WordCardData>().unlock, unlock) << "an empty one does not replace the first";
}

TEST_F(CardControllerTest, OnlyAMissingOrWrongKeyLeadsToTheSettings)
{
    using Kind = AIError::Kind;
    for (const Kind kind : {Kind::noKey, Kind::unauthorized, Kind::noBalance, Kind::badResponse}) {
        const bool needsSettings = kind == Kind::noKey || kind == Kind::unauthorized;
        lookup("word");
        ai.fail(AIError(kind));
        EXPECT_EQ(
            shown<CardError>(), (CardError{.message = AIError(kind).text(), .needsSettings = needsSettings}));
        card.openSettings();
        EXPECT_EQ(card.isVisible(), !needsSettings);
    }
    EXPECT_EQ(settingsRequests, 2);
    card.showTranslation(u"text"_s, {});
    ai.fail(AIError(Kind::noKey));
    EXPECT_TRUE(shown<CardError>().needsSettings);
}

TEST_F(CardControllerTest, ACardThatThePointerLeftGoesUnlessItComesBack)
{
    card.showTranslation(u"a text"_s, {640, 400});
    card.pointerLeft();
    notebook.clock.advance(600ms);
    card.pointerCame();
    notebook.clock.advance(10s);
    EXPECT_TRUE(card.isVisible());
    card.pointerLeft();
    card.showTranslation(u"another"_s, {640, 400});
    notebook.clock.advance(10s);
    EXPECT_TRUE(card.isVisible()) << "it was the one before that was left";
    card.pointerLeft();
    notebook.clock.advance(700ms);
    EXPECT_FALSE(card.isVisible());
}

TEST_F(CardControllerTest, AnOfferGoesAfterFourSecondsUnlessItWasTakenUp)
{
    card.offerTranslation(u"a text"_s, {640, 400});
    notebook.clock.advance(3999ms);
    EXPECT_TRUE(card.isVisible());
    notebook.clock.advance(1ms);
    EXPECT_EQ(card.state(), CardState(CardHidden{}));

    card.offerTranslation(u"a text"_s, {640, 400});
    notebook.clock.advance(3s);
    card.offerTranslation(u"another"_s, {640, 400}); // has its own four seconds
    notebook.clock.advance(3s);
    EXPECT_TRUE(card.isVisible());
    card.translate(u"another"_s);
    notebook.clock.advance(10s);
    EXPECT_EQ(shown<Translating>().text, u"another"_s);
    ai.reply(Translation{.translationZh = u"译文"_s});
    EXPECT_EQ(shown<TranslationData>(),
        (TranslationData{.original = u"another"_s, .translation = {.translationZh = u"译文"_s}}));
}

TEST_F(CardControllerTest, AFramedTextIsTranslatedAtOnceUntilSomethingElseIsShown)
{
    card.showTranslation(u"framed"_s, {100, 700});
    EXPECT_THAT(stateAtSource, ElementsAre(CardState(Translating{.text = u"framed"_s})));
    EXPECT_EQ(panel.placed.topLeft(), QPointF(76, 482));
    card.hide();
    EXPECT_EQ(ai.waiting(), 0) << "a translation nobody waits for ends on the network too";
    card.showTranslation(u"framed"_s, {});
    lookup("word");
    EXPECT_EQ(ai.waiting(), 1);
    EXPECT_EQ(shown<CardLoading>().selection, u"word"_s);
    card.showTranslation(u"framed"_s, {});
    card.showError({.message = u"框里没有识别到英文。"_s}, {640, 400});
    EXPECT_EQ(ai.waiting(), 1);
    EXPECT_EQ(card.anchor(), QPointF(640, 400));
}

TEST_F(CardControllerTest, AQuestionTakesTheSentenceAlong)
{
    card.ask(QuickQuestion::why);
    EXPECT_TRUE(asked.isEmpty());
    lookup("ran");
    Explanation explanation = Notebook::explained("run", "He ran.");
    explanation.sentenceZh = u"他跑了。"_s;
    ai.reply(explanation);
    card.ask(QuickQuestion::why);
    const AskContext ofWord{.original = u"He ran."_s,
        .translation = explanation.sentenceZh,
        .focusWord = u"run"_s,
        .explanation = explanation,
        .source = source};
    EXPECT_EQ(asked.last(), std::pair(ofWord, std::optional(QuickQuestion::why)));

    lookup("bare");
    ai.reply(Notebook::explained("bare", ""));
    card.ask(std::nullopt);
    EXPECT_EQ(asked.last().first.original, u"bare"_s);

    card.showTranslation(u"framed"_s, {});
    ai.reply(Translation{.translationZh = u"译文"_s});
    const AskContext ofText{
        .original = u"framed"_s, .translation = u"译文"_s, .source = std::exchange(source, {})};
    card.ask(std::nullopt);
    EXPECT_EQ(asked.last().first, ofText);
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
