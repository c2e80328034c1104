#include "review/ReviewScreen.h"

#include "review/ReviewRound.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

class ReviewScreenTest : public testing::Test, protected ReviewRound {
protected:
    ReviewScreenTest()
    {
        configure([](AppConfig &changed) { changed.leechThreshold = 2; });
    }

    ReviewScreen::Banner banner() const
    {
        return ReviewScreen::banner(*session, config.config().leechThreshold);
    }
    ReviewScreen::EmptyRound empty() const
    {
        return ReviewScreen::emptyRound(*session, store, config.config().learningSlots);
    }
};

} // namespace

TEST_F(ReviewScreenTest, ABannerShowsTheOutcomeAndALinkOffersRest)
{
    using enum ReviewScreen::Banner;
    const auto bannerAfter = [this](const WordEntry &word, Rating rating) {
        fill({word});
        session->start(0);
        EXPECT_EQ(banner(), none);
        judge(rating);
        return banner();
    };
    EXPECT_EQ(bannerAfter(due("worse", 1), Rating::again), leech);
    EXPECT_EQ(ReviewScreen::foot(*session), ReviewScreen::Foot::next);
    EXPECT_EQ(bannerAfter(due("firm", 0, 500), Rating::easy), graduated);
    for (const auto &[lapses, expected] : {std::pair(1, none), {2, restLink}}) {
        fill({due("hard", lapses)});
        session->start(0);
        session->reveal();
        EXPECT_EQ(banner(), expected);
    }
}

TEST_F(ReviewScreenTest, HintsAtTheFormThatTheSentenceNeeds)
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
    EXPECT_EQ(ReviewScreen::formLine(ReviewQuestion::make(run)), std::nullopt);
    EXPECT_EQ(ReviewScreen::baseLine(ReviewQuestion::make(run)), std::nullopt);
    run.spellLevel = 4;
    EXPECT_EQ(ReviewScreen::badge(ReviewQuestion::spelling(run)), u"听"_s);
}

TEST_F(ReviewScreenTest, ProgressAndFootEndWithTheRound)
{
    fill({practised("Kyoto")});
    session->startSpelling();
    EXPECT_EQ(ReviewScreen::progress(*session), (ReviewScreen::Progress{0, 1, u"1 / 1"_s}));
    type(u"Kyoto"_s);
    session->next();
    EXPECT_EQ(ReviewScreen::progress(*session), std::nullopt);
    EXPECT_EQ(ReviewScreen::foot(*session), std::nullopt);
}

TEST_F(ReviewScreenTest, OffersMoreWhileThereAreFreeSlots)
{
    WordEntry later = due("later");
    later.review->due = clock.now() + std::chrono::hours(48);
    fill({later});
    session->start(0);
    EXPECT_TRUE(empty().offersMore);
    configure([](AppConfig &config) { config.learningSlots = 1; });
    EXPECT_FALSE(empty().offersMore);
    EXPECT_EQ(empty().lines.last(), u"名额已满，等有词毕业就会自动补上。"_s);
}

} // namespace nimbrelle
