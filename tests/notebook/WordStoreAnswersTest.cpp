#include "frame/Failure.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

constexpr LogKind review = LogKind::review;

class Answers : public testing::Test, protected Notebook {
protected:
    /// The store as if it had been started on such a word.
    QUuid seedWord(std::optional<Stage> stage, qint64 lapses, double stability = 3)
    {
        WordEntry entry;
        entry.id = QUuid::createUuid();
        entry.headword = QStringLiteral("run");
        entry.createdAt = clock.now();
        entry.stage = stage;
        if (lapses >= 0)
            entry.review = ReviewState{stability, 5, clock.now(), clock.now() - 72h, 3, lapses, 1};
        SyncBundle bundle;
        seed(paths, {entry});
        reopened = std::make_unique<WordStore>(paths, clock, config, log,
            [this](WordEntry, QStringList, QStringList) -> QCoro::Task<QString> { return mnemonic(); });
        return entry.id;
    }

    QCoro::Task<QString> mnemonic()
    {
        ++mnemonicRequests;
        co_await clock.sleep(1s, {});
        if (mnemonicFails)
            throw Failure(QStringLiteral("没有网"));
        co_return QStringLiteral("联想：跑");
    }

    const WordEntry &only() const { return reopened->entries().first(); }

    std::unique_ptr<WordStore> reopened;
    int mnemonicRequests = 0;
    bool mnemonicFails = false;
};

TEST_F(Answers, GraduateAWordInLearningByStabilityAlone)
{
    config.setConfig([] {
        AppConfig changed;
        changed.graduateDays = 15;
        return changed;
    }());
    const QUuid id = seedWord(Stage::learning, -1);
    EXPECT_EQ(reopened->applyReview(id, Rating::easy, review), ReviewOutcome::graduated);
    EXPECT_EQ(only().stage, Stage::mastered);
    EXPECT_EQ(only().stateAt, clock.now());
    EXPECT_EQ(events(), (QStringList{QStringLiteral("review run easy"), QStringLiteral("graduate run")}));
    const double atLearningRetention = 15.69105 / 0.2345679012345679 * (std::pow(0.95, -2) - 1);
    EXPECT_NEAR(daysBetween(clock.now(), only().review->due), atLearningRetention, 1e-6);

    const QUuid seen = seedWord(Stage::seen, 0, 300);
    EXPECT_EQ(reopened->applyReview(seen, Rating::easy, review), ReviewOutcome::normal);
    EXPECT_EQ(only().stage, Stage::seen);
    EXPECT_EQ(only().stateAt, std::nullopt);
}

TEST_F(Answers, AskForHelpExactlyWhenTheLeechThresholdIsCrossed)
{
    const QUuid id = seedWord(Stage::learning, 3);
    EXPECT_EQ(reopened->applyReview(id, Rating::again, review), ReviewOutcome::becameLeech);
    EXPECT_EQ(mnemonicRequests, 1);
    EXPECT_EQ(only().stateAt, std::nullopt);
    clock.advance(1s);
    EXPECT_EQ(only().mnemonic, QStringLiteral("联想：跑"));
    EXPECT_EQ(entriesOnDisk(), reopened->entries());
    EXPECT_EQ(reopened->applyReview(id, Rating::again, review), ReviewOutcome::normal);
    reopened->requestMnemonic(id);
    EXPECT_EQ(mnemonicRequests, 1) << "a word with a memory aid asks for no other";
}

TEST_F(Answers, PreferGraduationToTheLeechRule)
{
    configure([](AppConfig &changed) { changed.graduateDays = 0; });
    const QUuid id = seedWord(Stage::learning, 3);
    EXPECT_EQ(reopened->applyReview(id, Rating::again, review), ReviewOutcome::graduated);
    EXPECT_EQ(mnemonicRequests, 0);
    EXPECT_TRUE(events().filter(QStringLiteral("leech")).isEmpty());
}

TEST_F(Answers, DropAMnemonicThatFailsOrComesTooLate)
{
    const QUuid id = seedWord(Stage::learning, 3);
    mnemonicFails = true;
    reopened->requestMnemonic(id);
    clock.advance(1s);
    EXPECT_EQ(only().mnemonic, std::nullopt);
    mnemonicFails = false;
    reopened->requestMnemonic(id);
    reopened->remove(id);
    clock.advance(1s);
    EXPECT_TRUE(reopened->entries().isEmpty());

    const QUuid other = seedWord(Stage::learning, 3);
    reopened->requestMnemonic(other);
    reopened.reset();
    clock.advance(1s);
}

TEST_F(Answers, CountEveryReviewOfTheDayAndBeginAnewTheNext)
{
    const QUuid id = seedWord(Stage::learning, 0);
    reopened->applyReview(id, Rating::good, review);
    reopened->applyReview(id, Rating::again, review);
    reopened->applyReview(QUuid(), Rating::again, review);
    EXPECT_EQ(reopened->stats().reviewed, 2);
    clock.advance(24h);
    reopened->applyReview(id, Rating::good, review);
    EXPECT_EQ(reopened->stats().reviewed, 1);
    EXPECT_EQ(readRecordFile<ReviewStats>(paths.reviewStats), reopened->stats());
}

TEST_F(Answers, ClimbTheSpellingLadderOneRungAtATime)
{
    struct Step {
        std::optional<qint64> from;
        Rating rating;
        qint64 to;
        const char *label;
    };
    const Step steps[]{
        {{}, Rating::again, 0, "看一眼再写"},
        {{}, Rating::hard, 0, "看一眼再写"},
        {0, Rating::good, 1, "看一眼再写"},
        {1, Rating::easy, 2, "补字母"},
        {2, Rating::hard, 2, "按块拼"},
        {4, Rating::good, 4, "听写"},
        {3, Rating::again, 2, "完整拼写"},
        {std::numeric_limits<qint64>::max(), Rating::good, 4, "听写"},
        {std::numeric_limits<qint64>::min(), Rating::again, 0, "看一眼再写"},
    };
    for (const Step &step : steps) {
        WordEntry entry;
        entry.id = QUuid::createUuid();
        entry.headword = QStringLiteral("run");
        entry.spellLevel = step.from;
        seed(paths, {entry});
        log.replaceAll({});
        WordStore spelled(paths, clock, config, log);
        EXPECT_EQ(spelled.applySpelling(entry.id, step.rating), step.to);
        const WordEntry &after = spelled.entries().first();
        EXPECT_EQ(after.spellLevel, step.to);
        EXPECT_EQ(after.lastSpelledAt, clock.now());
        EXPECT_EQ(after.review, std::nullopt);
        EXPECT_EQ(after.stateAt, std::nullopt);
        EXPECT_THAT(events(),
            ElementsAre(
                QStringLiteral("spell run %1 %2").arg(QString::fromUtf8(step.label), caseText(step.rating))));
    }
    EXPECT_EQ(store.applySpelling(QUuid(), Rating::good), 0);
}

TEST_F(Answers, PutAWordOnTheSpellListOnce)
{
    store.addSpellPractice(explained("Claude"));
    store.addSpellPractice(explained("claude"));
    EXPECT_EQ(store.entries().size(), 1);
    EXPECT_EQ(word("claude").spellPractice, true);
    EXPECT_EQ(word("claude").sourceKeys, QStringList{QStringLiteral("常拼")});
    EXPECT_EQ(
        events(), (QStringList{QStringLiteral("save Claude 常拼"), QStringLiteral("spell-add Claude")}));

    store.save(explained("run", "I run."), {});
    const WordEntry before = word("run");
    clock.advance(1h);
    const WordEntry added = store.addSpellPractice(explained("run", "You run."));
    EXPECT_EQ(added, word("run"));
    EXPECT_EQ(added.examples, before.examples) << "a saved word is not saved again";
    EXPECT_EQ(added.stateAt, clock.now());
    store.applySpelling(added.id, Rating::good);
    store.setSpellPractice(added.id, false);
    EXPECT_EQ(word("run").spellPractice, std::nullopt);
    EXPECT_EQ(word("run").spellLevel, 1) << "a word put back resumes at its level";
    EXPECT_EQ(events().last(), QStringLiteral("spell-remove run"));
}

TEST_F(Answers, RestForDaysOfAnyNumber)
{
    const QUuid id = save("run");
    store.rest(id, 7);
    EXPECT_EQ(word("run").restUntil, clock.now() + 7 * 24h);
    EXPECT_EQ(word("run").stage, Stage::resting);
    store.rest(id, std::numeric_limits<qint64>::max());
    EXPECT_EQ(word("run").restUntil, distantFuture);
    clock.advance(8 * 24h);
    store.rest(id, 0);
    EXPECT_EQ(store.fillSlots(0), 1) << "a rest that ended competes at once";
}

} // namespace
