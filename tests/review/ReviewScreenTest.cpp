#include "review/ReviewScreen.h"

#include "platform/Speaker.h"
#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

struct Silence final : Speaker {
    void speak(const QString &) override { }
};

class ReviewScreenTest : public testing::Test, protected Notebook {
protected:
    ReviewScreenTest()
    {
        configure([](AppConfig &config) { config.leechThreshold = 2; });
    }

    void open(const QList<WordEntry> &words)
    {
        seed(paths, words);
        session.reset();
        store = std::make_unique<WordStore>(paths, clock, config, log);
        session = std::make_unique<ReviewSession>(*store, clock, speaker);
    }
    WordEntry due(const char *headword, qint64 lapses = 0, double stability = 3) const
    {
        using namespace std::chrono_literals;
        WordEntry word = wordNamed(QString::fromUtf8(headword));
        word.createdAt = clock.now();
        word.stage = Stage::learning;
        word.review = ReviewState{stability, 5, clock.now() - 1h, clock.now() - 72h, 3, lapses, 1};
        return word;
    }
    ReviewScreen::Banner banner() const
    {
        return ReviewScreen::banner(*session, config.config().leechThreshold);
    }
    ReviewScreen::EmptyRound empty() const
    {
        return ReviewScreen::emptyRound(*session, *store, config.config().learningSlots);
    }

    Silence speaker;
    std::unique_ptr<WordStore> store;
    std::unique_ptr<ReviewSession> session;
};

} // namespace

TEST_F(ReviewScreenTest, LeadsThroughARound)
{
    using enum ReviewScreen::Foot;
    open({due("run"), due("walk")});
    EXPECT_EQ(ReviewScreen::foot(*session), std::nullopt);
    EXPECT_EQ(ReviewScreen::progress(*session), std::nullopt);
    session->start(0);
    EXPECT_EQ(ReviewScreen::foot(*session), reveal);
    EXPECT_EQ(ReviewScreen::progress(*session), (ReviewScreen::Progress{0, 2, u"1 / 2"_s}));
    EXPECT_EQ(ReviewScreen::badge(*session->current()), u"认"_s);
    session->reveal();
    EXPECT_EQ(ReviewScreen::foot(*session), rate);
    session->rate(Rating::good);
    EXPECT_EQ(ReviewScreen::foot(*session), type);
    EXPECT_EQ(ReviewScreen::progress(*session), (ReviewScreen::Progress{1, 3, u"2 / 3"_s}));
    session->submit();
    EXPECT_EQ(ReviewScreen::foot(*session), copy);
    session->next();
    session->reveal();
    session->rate(Rating::good);
    session->setInput(u"Walkx"_s);
    session->submit();
    EXPECT_EQ(ReviewScreen::foot(*session), proceed);
    session->next();
    EXPECT_EQ(ReviewScreen::foot(*session), std::nullopt);
    EXPECT_EQ(ReviewScreen::progress(*session), std::nullopt);
    const auto summary = ReviewScreen::summary(*session, *store, clock.now());
    EXPECT_EQ(summary.figures, u"记住了 2 个 · 还要再练 0 个 · 拼对 1 个"_s);
    EXPECT_TRUE(summary.comfort);
    EXPECT_FALSE(summary.offersAgain); // nothing is due any more
}

TEST_F(ReviewScreenTest, ABannerTellsOfTheOutcomeAndALinkOffersRest)
{
    using enum ReviewScreen::Banner;
    open({due("hard", 2), due("firm", 0, 500), due("worse", 1, 2)});
    session->start(0);
    QStringList seen;
    while (session->current() && seen.size() < 3) {
        const QString word = session->current()->entry.headword;
        seen.append(word);
        EXPECT_EQ(banner(), none);
        session->reveal();
        EXPECT_EQ(banner(), word == u"hard"_s ? restLink : none);
        session->rate(word == u"worse"_s ? Rating::again : word == u"firm"_s ? Rating::easy : Rating::hard);
        if (word == u"worse"_s) {
            EXPECT_EQ(banner(), leech);
            EXPECT_EQ(ReviewScreen::foot(*session), ReviewScreen::Foot::next);
        }
        session->next();
        if (session->current() && session->current()->isSpelling()) {
            session->submit();
            session->next();
        }
    }
    EXPECT_EQ(seen.size(), 3);
    configure([](AppConfig &config) { config.leechThreshold = 0; });
    session->reveal();
    EXPECT_EQ(banner(), restLink);
}

TEST_F(ReviewScreenTest, SpeaksOfTheFormThatTheSentenceNeeds)
{
    WordEntry run = wordNamed(u"run"_s);
    run.spellLevel = 3;
    run.inflections = QMap<QString, QString>{{u"past"_s, u"ran"_s}};
    run.examples = {exampleOf(u"He ran home."_s, Origin::generated)};
    const ReviewQuestion question = ReviewQuestion::spelling(run);
    EXPECT_EQ(ReviewScreen::prompt(question), u"完整拼写 · 看中文提示，把空填上"_s);
    EXPECT_EQ(ReviewScreen::initialLine(question), u"首字母 r · 3 个字母"_s);
    EXPECT_EQ(ReviewScreen::formLine(question), u"（要用 run 的过去式）"_s);
    EXPECT_EQ(ReviewScreen::baseLine(question), u"← run"_s);
    EXPECT_TRUE(ReviewScreen::isSentenceGenerated(question));
    EXPECT_THAT(ReviewScreen::formsOf(run), testing::IsSupersetOf({u"run"_s, u"ran"_s}));
    const ReviewQuestion plain = ReviewQuestion::make(run);
    EXPECT_EQ(ReviewScreen::formLine(plain), std::nullopt);
    EXPECT_EQ(ReviewScreen::baseLine(plain), std::nullopt);
    run.spellLevel = 4;
    EXPECT_EQ(ReviewScreen::badge(ReviewQuestion::spelling(run)), u"听"_s);
}

TEST_F(ReviewScreenTest, SaysWhyThereIsNothingToAsk)
{
    open({});
    session->start(0);
    EXPECT_EQ(empty().title, u"生词本还是空的"_s);
    session->startSpelling();
    EXPECT_EQ(empty().title, u"还没有常拼的词"_s);
    WordEntry later = due("later");
    later.review->due = clock.now() + std::chrono::hours(48);
    open({later});
    session->start(0);
    EXPECT_TRUE(empty().offersMore);
    EXPECT_THAT(empty().lines, ElementsAre(u"在学 1/30 · 记忆最需要的是间隔，过一阵再来效果更好。"_s));
    configure([](AppConfig &config) { config.learningSlots = 1; });
    EXPECT_FALSE(empty().offersMore);
    EXPECT_EQ(empty().lines.last(), u"名额已满，等有词毕业就会自动补上。"_s);
}

TEST_F(ReviewScreenTest, SumsUpARoundOfSpelling)
{
    WordEntry name = wordNamed(u"Kyoto"_s);
    name.createdAt = clock.now();
    name.spellPractice = true;
    open({name});
    session->startSpelling();
    session->setInput(u"Kyoto"_s);
    session->submit();
    session->next();
    const auto summary = ReviewScreen::summary(*session, *store, clock.now());
    EXPECT_EQ(summary.figures, u"拼对 1 次"_s);
    EXPECT_EQ(summary.levelUps, u"拼写升级：Kyoto"_s);
    EXPECT_EQ(summary.comfort, std::nullopt);
    EXPECT_TRUE(summary.offersAgain);
}

} // namespace nimbrelle
