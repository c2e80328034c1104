#include "review/ReviewRound.h"
#include "support/Printers.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Session = ReviewSession;
const Session::Phase asking = Session::Asking{}, empty = Session::Empty{}, finished = Session::Finished{};

Session::Phase revealed(Rating rating, const std::optional<QString> &message = std::nullopt)
{
    return Session::Revealed{.typed = true, .rating = rating, .message = message};
}

class Round : public testing::Test, protected ReviewRound {
protected:
    /// The queue from the current question on: ? for recognition, the level for spelling.
    QString ahead() const
    {
        QStringList texts;
        for (const ReviewQuestion &question : session->queue().mid(session->index())) {
            const auto mode = question.mode();
            texts.append(
                question.entry.headword + (mode ? QString::number(static_cast<int>(*mode)) : u"?"_s));
        }
        return texts.join(u' ');
    }
};

TEST_F(Round, PlaysFromTheFirstWordToTheSummary)
{
    WordEntry slang = due("ngl");
    slang.register_ = Register::slang;
    fill({due("firm", 0, 20), due("weak", 0, 1), slang, learning("new")});
    EXPECT_EQ(session->phase(), empty);
    session->start(0);
    EXPECT_EQ(session->phase(), asking);
    EXPECT_EQ(ahead(), u"weak? ngl? firm? new?"_s);

    judge(Rating::again);
    EXPECT_EQ(ahead(), u"ngl? firm? new? weak?"_s) << "a forgotten word comes again at the end";
    judge(Rating::good);
    EXPECT_EQ(ahead(), u"firm? new? weak?"_s) << "slang is never spelled";
    judge(Rating::hard);
    EXPECT_EQ(ahead(), u"new? weak?"_s) << "what was hard is not spelled";
    judge(Rating::good);
    EXPECT_EQ(ahead(), u"new0 weak?"_s) << "a word recalled is typed at once";

    type(u"nwe"_s);
    EXPECT_EQ(session->phase(), revealed(Rating::again, u"跟着打一遍，手会记住它"_s));
    EXPECT_EQ(speaker.said, QStringList{u"new"_s});
    session->setCopyInput(u"new"_s);
    session->next();
    EXPECT_EQ(session->copyInput(), QString());
    EXPECT_EQ(ahead(), u"weak?"_s) << "spelling is repeated only in a spelling round";

    judge(Rating::good);
    EXPECT_EQ(ahead(), u"weak0"_s) << "a repeat is typed too";
    type(u"weak"_s);
    EXPECT_EQ(session->phase(), revealed(Rating::good));
    clock.advance(1199ms);
    EXPECT_EQ(session->phase(), revealed(Rating::good));
    clock.advance(1ms);
    EXPECT_EQ(session->phase(), finished);
    EXPECT_EQ(session->current(), nullptr);
    EXPECT_EQ(session->liveEntry(), std::nullopt);
    EXPECT_EQ(session->remembered(), 4);
    EXPECT_EQ(session->forgot(), 1);
    EXPECT_EQ(session->spelledRight(), 1);
    EXPECT_THAT(session->spellLevelUps(), ElementsAre(u"weak"_s));
    EXPECT_EQ(events(),
        (QStringList{u"review weak again"_s, u"review ngl good"_s, u"review firm hard"_s,
            u"review new good"_s, u"spell new 看一眼再写 again"_s, u"review weak good"_s,
            u"spell weak 看一眼再写 good"_s}));
}

TEST_F(Round, RepeatsAForgottenWordOnce)
{
    fill({due("weak")});
    session->start(0);
    judge(Rating::again);
    judge(Rating::again);
    EXPECT_EQ(session->phase(), finished);
    EXPECT_EQ(session->forgot(), 2);
    clock.advance(10min);
    session->start(0);
    judge(Rating::again);
    EXPECT_EQ(ahead(), u"weak?"_s) << "a new round may repeat it again";
}

TEST_F(Round, WaitsOnAGraduation)
{
    fill({due("firm", 0, 29)});
    session->start(0);
    judge(Rating::good);
    EXPECT_EQ(session->lastOutcome(), ReviewOutcome::graduated);
    EXPECT_EQ(session->phase(), revealed(Rating::good));
    EXPECT_EQ(ahead(), u"firm? firm0"_s);
    session->rate(Rating::again);
    EXPECT_EQ(session->forgot(), 0) << "a word is rated once";
    clock.advance(1h);
    EXPECT_EQ(session->phase(), revealed(Rating::good)) << "the banner stays until it is dismissed";
    session->next();
    EXPECT_EQ(session->lastOutcome(), ReviewOutcome::normal);
    EXPECT_THAT(session->graduatedWords(), ElementsAre(u"firm"_s));
    EXPECT_EQ(word("firm").stage, Stage::mastered);
}

TEST_F(Round, ShowsAMemoryAidThatArrivesDuringTheRound)
{
    memoryAid = [this](WordEntry, QStringList, QStringList) -> QCoro::Task<QString> {
        co_await clock.sleep(5s, {});
        co_return u"联想"_s;
    };
    fill({due("hard", 3), due("other", 0, 9)});
    session->start(0);
    judge(Rating::again);
    EXPECT_EQ(session->lastOutcome(), ReviewOutcome::becameLeech);
    EXPECT_EQ(session->phase(), revealed(Rating::again));
    EXPECT_EQ(session->liveEntry()->mnemonic, std::nullopt);
    QCoreApplication::processEvents();
    int changes = 0;
    QObject::connect(&*session, &Session::changed, [&changes] { ++changes; });
    clock.advance(5s);
    QCoreApplication::processEvents();
    EXPECT_EQ(session->liveEntry()->mnemonic, u"联想"_s);
    EXPECT_EQ(session->current()->entry.mnemonic, std::nullopt) << "the question keeps its copy";
    EXPECT_EQ(changes, 1);
}

TEST_F(Round, RestsAWordWithItsFurtherQuestions)
{
    fill({due("hard", 3), due("other", 0, 9)});
    session->start(0);
    session->restWord();
    EXPECT_EQ(word("hard").stage, Stage::learning) << "not before the answer is on show";
    judge(Rating::again);
    EXPECT_EQ(ahead(), u"hard? other? hard?"_s);
    session->restWord();
    EXPECT_EQ(ahead(), u"other?"_s);
    EXPECT_EQ(word("hard").stage, Stage::resting);
    EXPECT_EQ(word("hard").restUntil, clock.now() + 7 * 24h);
}

TEST_F(Round, GoesOnFromCopiesWhenAWordIsDeleted)
{
    fill({due("gone"), due("other", 0, 9)});
    session->start(0);
    session->reveal();
    store.remove(word("gone").id);
    EXPECT_EQ(session->liveEntry()->headword, u"gone"_s);
    session->rate(Rating::again);
    EXPECT_EQ(ahead(), u"other?"_s) << "neither repeated nor spelled";
    judge(Rating::good);
    store.remove(word("other").id);
    type(u"other"_s);
    EXPECT_EQ(session->spelledRight(), 1);
    EXPECT_THAT(session->spellLevelUps(), IsEmpty());
    EXPECT_EQ(events(), QStringList{u"review other good"_s});
}

TEST_F(Round, MayBeginAnewInTheMiddle)
{
    fill({due("weak"), practised("Claude")});
    session->start(0);
    judge(Rating::again);
    judge(Rating::good);
    type(u"weak"_s);
    session->startSpelling();
    EXPECT_TRUE(session->isSpellingPractice());
    EXPECT_EQ(ahead(), u"Claude0"_s);
    EXPECT_EQ(session->remembered() + session->forgot() + session->spelledRight(), 0);
    EXPECT_EQ(session->input(), QString());
    EXPECT_THAT(session->spellLevelUps(), IsEmpty());
    clock.advance(2s);
    EXPECT_EQ(session->phase(), asking) << "the old round's wait is over";
    store.remove(word("Claude").id);
    session->startSpelling();
    EXPECT_EQ(session->phase(), empty);
    session->start(0);
    EXPECT_FALSE(session->isSpellingPractice());
}

TEST_F(Round, MovesOnOnlyFromTheQuestionThatWasWaitedFor)
{
    fill({practised("one"), practised("two"), practised("three")});
    session->startSpelling();
    type(u"one"_s);
    clock.advance(600ms);
    session->next();
    type(u"two"_s);
    clock.advance(600ms);
    EXPECT_EQ(session->index(), 1) << "the first wait ended with its question";
    EXPECT_EQ(session->phase(), revealed(Rating::good));
    clock.advance(600ms);
    EXPECT_EQ(session->index(), 2);
    type(u"three"_s);
    session.reset();
    clock.advance(2s);
}

TEST_F(Round, StaysOnARightAnswerWithARemark)
{
    fill({practised("Claude")});
    session->startSpelling();
    type(u"claude"_s);
    clock.advance(1h);
    EXPECT_EQ(session->phase(), revealed(Rating::good, u"注意大写：Claude"_s));
    EXPECT_THAT(session->spellLevelUps(), ElementsAre(u"Claude"_s));
}

TEST_F(Round, OfSpellingRepeatsAMissOnceAndOneRungLower)
{
    fill({practised("unlock", 2), practised("name", 4)});
    session->startSpelling();
    EXPECT_EQ(ahead(), u"unlock2 name4"_s);
    type(QString());
    EXPECT_EQ(session->phase(), revealed(Rating::again, u"没关系，跟着打一遍就好"_s));
    EXPECT_EQ(word("unlock").spellLevel, 1);
    EXPECT_EQ(ahead(), u"unlock2 name4 unlock1"_s);
    speaker.said.clear();
    session->next();
    EXPECT_THAT(speaker.said, ElementsAre(u"name"_s)) << "dictation begins by itself";
    type(u"nam"_s);
    EXPECT_EQ(session->spelledRight(), 1) << "hard counts as spelled";
    EXPECT_THAT(speaker.said, ElementsAre(u"name"_s, u"name"_s));
    session->next();
    type(QString());
    session->next();
    EXPECT_EQ(session->phase(), finished);
    EXPECT_EQ(word("unlock").spellLevel, 0);
}

TEST_F(Round, GivesLettersAndCountsThem)
{
    fill({practised("ran")});
    session->startSpelling();
    session->setInput(u"ruX"_s);
    session->giveLetter();
    EXPECT_EQ(session->input(), u"ra"_s);
    session->giveLetter();
    session->giveLetter();
    EXPECT_EQ(session->hintsUsed(), 2) << "nothing was left to give";
    session->submit();
    EXPECT_EQ(session->phase(), revealed(Rating::hard, u"用了 2 次提示，也算拼出来了"_s));
    session->next();
    EXPECT_EQ(session->hintsUsed(), 0);
}

TEST_F(Round, IgnoresMovesOutsideTheirPhase)
{
    const auto everyMoveBut = [this](auto allowed) {
        const auto before = std::tuple(session->index(), session->phase(), session->queue(), events());
        if (allowed != &Session::reveal)
            session->reveal();
        if (allowed != &Session::submit)
            session->submit();
        if (allowed != &Session::next)
            session->next();
        session->giveLetter();
        EXPECT_EQ(before, std::tuple(session->index(), session->phase(), session->queue(), events()));
    };
    fill({due("weak"), practised("Claude")});
    everyMoveBut(&Session::changed);
    session->rate(Rating::good);
    session->start(0);
    session->rate(Rating::good);
    everyMoveBut(&Session::reveal);
    session->reveal();
    everyMoveBut(&Session::changed);
    session->rate(Rating::hard);
    EXPECT_EQ(session->phase(), finished);
    session->rate(Rating::good);
    session->restWord();
    everyMoveBut(&Session::changed);
    session->startSpelling();
    session->rate(Rating::good);
    everyMoveBut(&Session::submit);
    EXPECT_EQ(events(), QStringList{u"review weak hard"_s});
}

} // namespace
