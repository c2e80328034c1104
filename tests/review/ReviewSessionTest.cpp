#include "review/ReviewSession.h"

#include "platform/Speaker.h"
#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/Words.h"

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

struct RecordingSpeaker : Speaker {
    void speak(const QString &text) override { said.append(text); }

    QStringList said;
};

/// A session over a notebook of its own, played by its moves.
class Round : public testing::Test, protected Notebook {
protected:
    void TearDown() override { clock.advance(1min); } // lets what still waits run out

    static WordEntry learning(const char *headword)
    {
        WordEntry word = wordNamed(QString::fromUtf8(headword));
        word.createdAt = ManualClock().now();
        word.stage = Stage::learning;
        return word;
    }

    static WordEntry practised(const char *headword, qint64 level = 0)
    {
        WordEntry word = learning(headword);
        word.stage = std::nullopt;
        word.spellPractice = true;
        word.spellLevel = level;
        return word;
    }

    WordEntry due(const char *headword, qint64 lapses = 0, double stability = 3)
    {
        WordEntry word = learning(headword);
        word.review = ReviewState{stability, 5, clock.now() - 1h, clock.now() - 72h, 3, lapses, 1};
        return word;
    }

    void open(const QList<WordEntry> &words)
    {
        seed(paths, words);
        session.reset();
        words_ = std::make_unique<WordStore>(paths, clock, config, log,
            [this](WordEntry, QStringList, QStringList) -> QCoro::Task<QString> { return mnemonic(); });
        session = std::make_unique<Session>(*words_, clock, speaker);
    }

    QCoro::Task<QString> mnemonic()
    {
        co_await clock.sleep(5s, {});
        co_return u"联想"_s;
    }

    const WordEntry &live(const char *headword) const
    {
        return *words_->findHeadword(QString::fromUtf8(headword));
    }

    void judge(Rating rating)
    {
        session->reveal();
        session->rate(rating);
    }

    void type(const QString &text)
    {
        session->setInput(text);
        session->submit();
    }

    /// What stands in the queue from the current question on: ? for recognition, the level for spelling.
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

    Session::Phase revealed(Rating rating, const std::optional<QString> &message = std::nullopt) const
    {
        return Session::Revealed{true, rating, message};
    }

    RecordingSpeaker speaker;
    std::unique_ptr<WordStore> words_;
    std::unique_ptr<Session> session;
};

TEST_F(Round, PlaysFromTheFirstWordToTheSummary)
{
    WordEntry slang = due("ngl");
    slang.register_ = Register::slang;
    open({due("firm", 0, 20), due("weak", 0, 1), slang, learning("new")});
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
    open({due("weak")});
    session->start(0);
    judge(Rating::again);
    EXPECT_EQ(ahead(), u"weak?"_s);
    judge(Rating::again);
    EXPECT_EQ(session->phase(), finished);
    EXPECT_EQ(session->forgot(), 2);
    session->start(0);
    EXPECT_EQ(session->phase(), empty) << "it comes due again in ten minutes";
    clock.advance(10min);
    session->start(0);
    judge(Rating::again);
    EXPECT_EQ(ahead(), u"weak?"_s) << "a new round may repeat it again";
}

TEST_F(Round, WaitsOnAGraduation)
{
    open({due("firm", 0, 29)});
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
    EXPECT_EQ(live("firm").stage, Stage::mastered);
}

TEST_F(Round, ShowsAMemoryAidThatArrivesDuringTheRound)
{
    open({due("hard", 3), due("other", 0, 9)});
    session->start(0);
    judge(Rating::again);
    EXPECT_EQ(session->lastOutcome(), ReviewOutcome::becameLeech);
    EXPECT_EQ(session->phase(), revealed(Rating::again));
    EXPECT_EQ(session->liveEntry()->mnemonic, std::nullopt);
    QCoreApplication::processEvents();
    int changes = 0;
    QObject::connect(session.get(), &Session::changed, [&changes] { ++changes; });
    clock.advance(5s);
    QCoreApplication::processEvents();
    EXPECT_EQ(session->liveEntry()->mnemonic, u"联想"_s);
    EXPECT_EQ(session->current()->entry.mnemonic, std::nullopt) << "the question keeps its copy";
    EXPECT_EQ(changes, 1);
}

TEST_F(Round, RestsAWordWithItsFurtherQuestions)
{
    open({due("hard", 3), due("other", 0, 9)});
    session->start(0);
    session->restWord();
    EXPECT_EQ(live("hard").stage, Stage::learning) << "not before the answer is on show";
    judge(Rating::again);
    EXPECT_EQ(ahead(), u"hard? other? hard?"_s);
    session->restWord();
    EXPECT_EQ(ahead(), u"other?"_s);
    EXPECT_EQ(live("hard").stage, Stage::resting);
    EXPECT_EQ(live("hard").restUntil, clock.now() + 7 * 24h);
}

TEST_F(Round, GoesOnFromCopiesWhenAWordIsDeleted)
{
    open({due("gone"), due("other", 0, 9)});
    session->start(0);
    session->reveal();
    words_->remove(live("gone").id);
    EXPECT_EQ(session->liveEntry()->headword, u"gone"_s);
    session->rate(Rating::again);
    EXPECT_EQ(ahead(), u"other?"_s) << "neither repeated nor spelled";
    judge(Rating::good);
    words_->remove(live("other").id);
    type(u"other"_s);
    EXPECT_EQ(session->spelledRight(), 1);
    EXPECT_THAT(session->spellLevelUps(), IsEmpty());
    EXPECT_EQ(events(), QStringList{u"review other good"_s});
}

TEST_F(Round, MayBeginAnewInTheMiddle)
{
    open({due("weak"), practised("Claude")});
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
    words_->remove(live("Claude").id);
    session->startSpelling();
    EXPECT_EQ(session->phase(), empty);
    session->start(0);
    EXPECT_FALSE(session->isSpellingPractice());
}

TEST_F(Round, MovesOnOnlyFromTheQuestionThatWasWaitedFor)
{
    open({practised("one"), practised("two"), practised("three")});
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
    open({practised("Claude")});
    session->startSpelling();
    type(u"claude"_s);
    clock.advance(1h);
    EXPECT_EQ(session->phase(), revealed(Rating::good, u"注意大写：Claude"_s));
    EXPECT_THAT(session->spellLevelUps(), ElementsAre(u"Claude"_s));
}

TEST_F(Round, OfSpellingRepeatsAMissOnceAndOneRungLower)
{
    open({practised("unlock", 2), practised("name", 4)});
    session->startSpelling();
    EXPECT_EQ(ahead(), u"unlock2 name4"_s);
    type(QString());
    EXPECT_EQ(session->phase(), revealed(Rating::again, u"没关系，跟着打一遍就好"_s));
    EXPECT_EQ(live("unlock").spellLevel, 1);
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
    EXPECT_EQ(live("unlock").spellLevel, 0);
}

TEST_F(Round, GivesLettersAndCountsThem)
{
    open({practised("ran")});
    session->startSpelling();
    session->setInput(u"ruX"_s);
    session->giveLetter();
    EXPECT_EQ(session->input(), u"ra"_s);
    session->giveLetter();
    session->giveLetter();
    EXPECT_EQ(session->input(), u"ran"_s);
    EXPECT_EQ(session->hintsUsed(), 2) << "nothing was left to give";
    session->submit();
    EXPECT_EQ(session->phase(), revealed(Rating::hard, u"用了 2 次提示，也算拼出来了"_s));
    EXPECT_EQ(live("ran").spellLevel, 0);
    session->giveLetter();
    EXPECT_EQ(session->hintsUsed(), 2);
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
    open({due("weak"), practised("Claude")});
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
