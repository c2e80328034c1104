#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class Rounds : public testing::Test, protected Notebook {
protected:
    WordEntry reviewed(const char *headword, std::optional<Stage> stage, std::chrono::seconds dueIn,
        double stability = 3, std::chrono::hours ago = 72h)
    {
        WordEntry word = fresh(headword, stage);
        word.review = ReviewState{stability, 5, clock.now() + dueIn, clock.now() - ago, 1, 0, 1};
        return word;
    }

    WordEntry fresh(const char *headword, std::optional<Stage> stage)
    {
        WordEntry word = wordNamed(QString::fromLatin1(headword));
        word.createdAt = clock.now();
        word.stage = stage;
        return word;
    }

    WordEntry spelled(const char *headword, std::optional<Timestamp> at)
    {
        WordEntry word = fresh(headword, Stage::resting);
        word.spellPractice = true;
        word.lastSpelledAt = at;
        return word;
    }

    /// The store as if it had been started on these words.
    WordStore &open(const QList<WordEntry> &words)
    {
        seed(paths, words);
        reopened = std::make_unique<WordStore>(paths, clock, config, log);
        return *reopened;
    }

    QString headwords(const QList<QUuid> &ids) const
    {
        QStringList words;
        for (const QUuid &id : ids)
            words.append(reopened->find(id)->headword);
        return words.join(u' ');
    }

    std::unique_ptr<WordStore> reopened;
};

TEST_F(Rounds, AskTheMostForgottenFirstAndThenNewWords)
{
    configure([](AppConfig &changed) { changed.dailyNewLimit = 0; });
    WordStore &store = open({fresh("new1", Stage::learning), reviewed("firm", Stage::mastered, -1s, 90),
        reviewed("resting", Stage::resting, -1h), reviewed("now", Stage::learning, 0s, 2),
        reviewed("later", Stage::learning, 1s), reviewed("weak1", Stage::learning, -1h, 1),
        fresh("odd", Stage::mastered), reviewed("weak2", Stage::learning, -1h, 1), fresh("seen", {}),
        fresh("new2", Stage::learning)});
    reopened->rest(store.entries()[2].id, 1);
    EXPECT_EQ(headwords(store.buildSession(0)), u"weak1 weak2 now firm new1 new2"_s);

    configure([](AppConfig &changed) { changed.sessionSize = 3; });
    EXPECT_EQ(headwords(store.buildSession(0)), u"weak1 weak2 now"_s);
    configure([](AppConfig &changed) { changed.sessionSize = -1; });
    EXPECT_EQ(headwords(store.buildSession(0)), QString());
}

TEST_F(Rounds, OutliveDamagedFigures)
{
    WordStore &store =
        open({reviewed("firm", Stage::mastered, -1s, 90), reviewed("zero", Stage::mastered, -1s, 0),
            reviewed("below", Stage::mastered, -1s, -0.1), reviewed("weak", Stage::mastered, -1s, 1)});
    EXPECT_EQ(headwords(store.buildSession(0)), u"zero below weak firm"_s);
}

TEST_F(Rounds, LetWordsInFirst)
{
    WordStore &store = open({fresh("one", {}), fresh("two", Stage::seen), fresh("three", {})});
    configure([](AppConfig &changed) { changed.dailyNewLimit = 1; });
    EXPECT_EQ(headwords(store.buildSession(0)), u"one"_s);
    EXPECT_EQ(headwords(store.buildSession(0)), u"one"_s) << "the day's allowance is used up";
    EXPECT_EQ(headwords(store.buildSession(5)), u"one two three"_s);
    EXPECT_EQ(store.learningCount(), 3);
}

TEST_F(Rounds, AreCountedWithoutChangingAnything)
{
    WordEntry rested = reviewed("rested", Stage::resting, -1h);
    rested.restUntil = clock.now();
    configure([](AppConfig &changed) { changed.learningSlots = changed.dailyNewLimit = 2; });
    WordStore &store = open({fresh("new1", {}), fresh("new2", {}), rested,
        reviewed("leaving1", Stage::learning, -1h), reviewed("leaving2", Stage::learning, -1h),
        reviewed("kept", Stage::learning, -1h, 9), reviewed("kept2", Stage::mastered, -1h)});
    const QList<WordEntry> before = store.entries();
    int changes = 0;
    QObject::connect(&store, &WordStore::changing, [&changes] { ++changes; });
    EXPECT_EQ(store.sessionCount(clock.now()), 3) << "one of three had to leave";
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(store.entries(), before);
    EXPECT_EQ(store.buildSession(0).size(), 3);

    configure([](AppConfig &changed) { changed.learningSlots = 9; });
    EXPECT_EQ(store.sessionCount(clock.now()), 5);
    EXPECT_EQ(store.buildSession(0).size(), 5);
    EXPECT_EQ(store.sessionCount(clock.now()), 5) << "the allowance is used up";
    clock.advance(24h);
    EXPECT_EQ(store.sessionCount(clock.now()), 7) << "that of a new day counts";
    EXPECT_EQ(store.buildSession(0).size(), 7);
}

TEST_F(Rounds, OfSpellingTakeTheLeastRecentlySpelled)
{
    WordStore &store =
        open({spelled("late", clock.now()), spelled("never1", {}), fresh("other", Stage::learning),
            spelled("early", clock.now() - 1h), spelled("never2", {}), spelled("early2", clock.now() - 1h)});
    EXPECT_EQ(headwords(store.buildSpellingSession(10)), u"never1 never2 early early2 late"_s);
    EXPECT_EQ(headwords(store.buildSpellingSession(3)), u"never1 never2 early"_s);
    EXPECT_EQ(headwords(store.buildSpellingSession(-1)), QString());
    EXPECT_EQ(headwords(open({}).buildSpellingSession(10)), QString());
    EXPECT_EQ(headwords(open({}).buildSession(0)), QString());
}

} // namespace
