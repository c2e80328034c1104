#include "frame/Failure.h"
#include "frame/RecordFile.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class WordStoreTest : public testing::Test, protected Notebook {
protected:
    /// What was logged since the last question; all of it must be on disk.
    QStringList logged()
    {
        EXPECT_EQ(entriesOnDisk(), store.entries());
        const QStringList all = events();
        return all.mid(std::exchange(m_asked, all.size()));
    }
    QCoro::Task<QString> memoryAid(int request)
    {
        co_await clock.sleep(1s, {});
        if (request == 1)
            throw Failure(u"没有网"_s);
        co_return u"联想：跑"_s;
    }

private:
    qsizetype m_asked = 0;
};

TEST_F(WordStoreTest, FindsWordsWithBlanksRoundTheQuestionOnly)
{
    const QUuid run = save("Run");
    save("walk ");
    EXPECT_EQ(store.findHeadword(u" run\t"_s), store.find(run));
    EXPECT_EQ(store.index(u"RUN"_s), 1);
    for (const QString &unknown : {u"run\n"_s, u"walk "_s, u"ＲＵＮ"_s})
        EXPECT_EQ(store.findHeadword(unknown), nullptr) << "a headword is stored as it came";
}

TEST_F(WordStoreTest, ComesBackAsItWasAtAWholeSecond)
{
    clock.advance(123456us);
    Explanation explanation = explained("run", "He ran.");
    explanation.grammar = u"past_simple"_s;
    explanation.affixes = QStringList{u"re-"_s};
    store.save(explanation, page("https://a.org"));
    store.addNote({.id = QUuid::createUuid()}, u"RUN"_s);
    store.addNote({}, u"unknown"_s);
    store.addSentenceNote({.id = QUuid::createUuid()});
    const SyncBundle reopened = WordStore(paths, clock, config, log).snapshot();
    EXPECT_EQ(reopened.words.first().notes->size(), 1);
    EXPECT_EQ(reopened.words.first().createdAt, std::chrono::floor<std::chrono::seconds>(clock.now()));
    EXPECT_EQ(reopened.notes.size() + reopened.grammar.size() + reopened.affixes.size(), 3);

    ASSERT_TRUE(replaceFile(paths.words, readFile(paths.words)->replace("\"run\"", "7")));
    const WordStore damaged(paths, clock, config, log);
    EXPECT_TRUE(damaged.entries().isEmpty()) << "a file is read whole or not at all";
    EXPECT_EQ(damaged.sentenceNotes().size(), 1);
}

TEST_F(WordStoreTest, ForgetsTheCountersOfAnotherDay)
{
    writeRecordFile(paths.reviewStats, ReviewStats{u"2026-02-28"_s, 5, 5});
    EXPECT_EQ(WordStore(paths, clock, config, log).stats().reviewed, 0);
    const ReviewStats today{u"2026-03-01"_s, 5, 4};
    writeRecordFile(paths.reviewStats, today);
    EXPECT_EQ(WordStore(paths, clock, config, log).stats(), today);
}

TEST_F(WordStoreTest, BuriesWhatIsDeletedAlsoTwiceAndByTheRecordsOwnId)
{
    const QUuid run = save("run"), note = QUuid::createUuid();
    save("walk");
    store.addSentenceNote({.id = note});
    store.remove(store.entries().last().id); // of the very record that goes
    store.remove(run);
    store.deleteSentenceNote(store.sentenceNotes().first().id);
    EXPECT_EQ(store.entries().size(), 1);
    EXPECT_TRUE(store.sentenceNotes().isEmpty());
    EXPECT_EQ(readRecordFile<QList<Tombstone>>(paths.deleted), store.deleted());
    QStringList buried;
    for (const Tombstone &tombstone : store.deleted())
        buried.append(tombstone.id);
    const QString id = run.toString(QUuid::WithoutBraces).toUpper();
    EXPECT_EQ(buried, (QStringList{id, id, idText(note)}));
    EXPECT_EQ(logged().size(), 2) << "a deletion is no event";
}

TEST_F(WordStoreTest, DeletesPartsOfAWordButNotItsDiscoveries)
{
    Explanation explanation = explained("run", "He ran.");
    explanation.grammar = u"past_simple"_s;
    const WordEntry run = store.save(explanation, {}).entry;
    const AINote note{.id = QUuid::createUuid()};
    store.addNote(note, run.headword);
    store.deleteNote(note.id, QUuid::createUuid());
    EXPECT_TRUE(store.deleted().isEmpty()) << "an unknown word leaves no tombstone";
    store.deleteNote(note.id, run.id);
    store.deleteExample(run.examples.first().id, run.id);
    EXPECT_EQ(word("run").notes, QList<AINote>()) << "emptied, not absent";
    EXPECT_TRUE(word("run").examples.isEmpty());
    EXPECT_EQ(entriesOnDisk(), store.entries());
    store.remove(run.id);
    EXPECT_EQ(store.unlockedGrammar().size(), 1);
    store.deleteGrammarEncounter(store.grammarEncounters().first().id);
    EXPECT_TRUE(store.unlockedGrammar().isEmpty());
    EXPECT_EQ(store.deleted().size(), 4);
}

TEST_F(WordStoreTest, NotifiesBeforeAChangeTakesEffect)
{
    QList<QList<WordEntry>> taken;
    QObject::connect(&store, &WordStore::changing, [&] { taken.append(store.entries()); });
    const QUuid run = save("run");
    EXPECT_TRUE(taken.first().isEmpty());
    store.setWantToLearn(run, true);
    EXPECT_EQ(taken.last().first().wantToLearn, std::nullopt) << "what was taken stays as it was";
    taken.clear();
    store.applyReview(run, Rating::good, LogKind::review);
    EXPECT_EQ(taken.size(), 2) << "of the word and of the counters";
}

TEST_F(WordStoreTest, FillsTheLearningSetAndEmptiesItAgain)
{
    for (const char *headword : {"one", "two", "three"})
        save(headword);
    logged();
    EXPECT_EQ(store.buildSession(0).size(), 3);
    EXPECT_EQ(logged(), (QStringList{u"join three"_s, u"join two"_s, u"join one"_s}));
    EXPECT_EQ(readRecordFile<ReviewStats>(paths.reviewStats)->newLearned, 3);
    configure([](AppConfig &changed) { changed.learningSlots = 1; });
    EXPECT_EQ(store.sessionCount(clock.now()), 1);
    EXPECT_EQ(store.learningCount(), 3) << "counting changes nothing";
    EXPECT_EQ(store.fillSlots(5), 0);
    EXPECT_EQ(store.learningCount(), 1);
    EXPECT_EQ(logged().filter(u"leave"_s).size(), 2);

    configure([](AppConfig &changed) { changed.learningSlots = changed.dailyNewLimit = 3; });
    EXPECT_EQ(store.sessionCount(clock.now()), 1) << "the day's allowance is used up";
    EXPECT_EQ(store.sessionCount(clock.now() + 24h), 3);
    EXPECT_EQ(store.buildSession(1).size(), 2) << "one more was asked for";
    clock.advance(24h);
    EXPECT_EQ(store.buildSession(0).size(), 3);
}

TEST_F(WordStoreTest, StartsLearningByHandOnlyWithAFreeSlot)
{
    const QUuid run = save("run"), walk = save("walk");
    configure([](AppConfig &changed) { changed.learningSlots = 1; });
    store.rest(run, 7);
    logged();
    EXPECT_TRUE(store.startLearning(run));
    EXPECT_EQ(word("run").restUntil, std::nullopt);
    EXPECT_EQ(word("run").stateAt, clock.now());
    for (const QUuid &refused : {run, walk, QUuid()})
        EXPECT_FALSE(store.startLearning(refused));
    configure([](AppConfig &changed) { changed.learningSlots = 2; });
    EXPECT_FALSE(store.startLearning(run));
    EXPECT_EQ(store.stats().newLearned, 0);
    EXPECT_EQ(logged(), QStringList{u"join run manual"_s});
    store.setWantToLearn(walk, true);
    EXPECT_EQ(word("walk").wantToLearn, true);
    store.setWantToLearn(walk, false);
    EXPECT_EQ(word("walk").wantToLearn, std::nullopt);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(WordStoreTest, LogsCountsAndSavesAnswers)
{
    const QUuid id = save("run");
    store.startLearning(id);
    configure([](AppConfig &changed) { changed.graduateDays = 15; });
    logged();
    store.applyReview(id, Rating::again, LogKind::review);
    EXPECT_EQ(store.applyReview(QUuid(), Rating::again, LogKind::review), ReviewOutcome::normal);
    WordEntry firm = word("run");
    firm.review->stability = 14;
    fill({firm});
    EXPECT_EQ(store.applyReview(id, Rating::easy, LogKind::review), ReviewOutcome::graduated);
    EXPECT_EQ(events(), (QStringList{u"review run easy"_s, u"graduate run"_s}));
    EXPECT_EQ(store.stats().reviewed, 2);
    clock.advance(24h);
    store.applyReview(id, Rating::good, LogKind::review);
    EXPECT_EQ(store.stats().reviewed, 1) << "of a new day";
    EXPECT_EQ(readRecordFile<ReviewStats>(paths.reviewStats), store.stats());
    EXPECT_EQ(store.applySpelling(id, Rating::good), 1);
    EXPECT_EQ(store.applySpelling(id, Rating::hard), 1);
    EXPECT_EQ(store.applySpelling(QUuid(), Rating::good), 0);
    store.rest(id, 1);
    EXPECT_EQ(events().mid(3),
        (QStringList{u"spell run 看一眼再写 good"_s, u"spell run 补字母 hard"_s, u"rest run"_s}));
    EXPECT_EQ(entriesOnDisk().first().spellLevel, 1);
    EXPECT_EQ(entriesOnDisk().first().stage, Stage::resting);
}

TEST_F(WordStoreTest, PutsAWordOnTheSpellListOnce)
{
    store.addSpellPractice(explained("Claude"));
    store.addSpellPractice(explained("claude"));
    EXPECT_EQ(logged(), (QStringList{u"save Claude 常拼"_s, u"spell-add Claude"_s}));
    store.save(explained("run", "I run."), {});
    clock.advance(1h);
    const WordEntry added = store.addSpellPractice(explained("run", "You run."));
    EXPECT_EQ(added, word("run"));
    EXPECT_EQ(added.examples.size(), 1) << "a saved word is not saved again";
    EXPECT_EQ(added.stateAt, clock.now());
    EXPECT_EQ(store.spellPracticeCount(), 2);
    store.applySpelling(added.id, Rating::good);
    EXPECT_EQ(word("run").headword, store.find(store.buildSpellingSession(2).last())->headword);
    store.setSpellPractice(added.id, false);
    EXPECT_EQ(word("run").spellPractice, std::nullopt);
    EXPECT_EQ(word("run").spellLevel, 1) << "a word put back resumes at its level";
    EXPECT_EQ(logged().last(), u"spell-remove run"_s);
}

TEST_F(WordStoreTest, RequestsAMemoryAidOnceAndDropsOneThatFailsOrComesTooLate)
{
    const WordEntry word{.id = QUuid::createUuid(), .headword = u"run"_s, .review = ReviewState{.lapses = 3}};
    seed(paths, {word});
    int requests = 0;
    auto helped = std::make_unique<WordStore>(paths, clock, config, log,
        [&](WordEntry, QStringList, QStringList) -> QCoro::Task<QString> { return memoryAid(++requests); });
    helped->requestMnemonic(word.id);
    clock.advance(1s);
    EXPECT_EQ(helped->find(word.id)->mnemonic, std::nullopt) << "the first request fails";
    EXPECT_EQ(helped->applyReview(word.id, Rating::again, LogKind::review), ReviewOutcome::becameLeech);
    EXPECT_THAT(events(), ElementsAre(u"review run again"_s, u"leech run"_s));
    clock.advance(1s);
    EXPECT_EQ(entriesOnDisk().first().mnemonic, u"联想：跑"_s);
    helped->requestMnemonic(word.id);
    EXPECT_EQ(requests, 2) << "a word with a memory aid needs no other";

    helped->applySync({.words = {word}});
    helped->requestMnemonic(word.id);
    helped->remove(word.id);
    clock.advance(1s);
    EXPECT_TRUE(helped->entries().isEmpty());
    helped->applySync({.words = {word}});
    helped->requestMnemonic(word.id);
    helped.reset();
    clock.advance(1s);
    EXPECT_EQ(requests, 4);
}

TEST(WordStore, WorksInMemoryWhenNothingCanBeWritten)
{
    const AppPaths nowhere(u"/proc/nowhere"_s);
    ManualClock clock;
    ConfigStore config(nowhere, clock);
    LearningLog log(nowhere, clock);
    WordStore store(nowhere, clock, config, log);
    const QUuid id = store.save(Notebook::explained("run"), {}).entry.id;
    EXPECT_EQ(store.fillSlots(0), 1);
    store.remove(id);
    EXPECT_EQ(store.deleted().size(), 1);
}

} // namespace
