#include "support/Notebook.h"
#include "support/Printers.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;

namespace {

class WordStoreFiles : public testing::Test, protected Notebook {
protected:
    std::optional<QList<Tombstone>> tombstonesOnDisk() const
    {
        return readRecordFile<QList<Tombstone>>(paths.deleted);
    }
};

TEST_F(WordStoreFiles, FindWordsWithBlanksRoundTheQuestionOnly)
{
    save("Run");
    EXPECT_EQ(store.index(QStringLiteral(" run\t")), 0);
    EXPECT_EQ(store.index(QStringLiteral("run\n")), std::nullopt);
    save("walk ");
    EXPECT_EQ(store.entries().first().headword, QStringLiteral("walk ")) << "a headword is stored as it came";
    EXPECT_EQ(store.index(QStringLiteral("walk ")), std::nullopt);
    EXPECT_EQ(store.index(QStringLiteral("ＲＵＮ")), std::nullopt);
}

TEST_F(WordStoreFiles, ComeBackAsTheyWereAtAWholeSecond)
{
    clock.advance(123456us);
    Explanation explanation = explained("run", "He ran.");
    explanation.grammar = QStringLiteral("past_simple");
    explanation.affixes = QStringList{QStringLiteral("re-")};
    store.save(explanation, page("https://a.org"));
    store.addNote({QUuid::createUuid(), QStringLiteral("为什么"), {}, {}, {}, {}, {}, {}, clock.now()},
        QStringLiteral("RUN"));
    store.addNote({}, QStringLiteral("unknown"));
    store.addSentenceNote({QUuid::createUuid(), QStringLiteral("q"), {}, {}, {}, {}, {}, {}, clock.now()});
    const WordStore reopened(paths, clock, config, log);
    ASSERT_EQ(reopened.entries().size(), 1);
    EXPECT_EQ(reopened.entries().first().notes->size(), 1);
    EXPECT_EQ(reopened.entries().first().createdAt, std::chrono::floor<std::chrono::seconds>(clock.now()));
    EXPECT_EQ(reopened.sentenceNotes().size(), 1);
    EXPECT_EQ(reopened.grammarEncounters().size(), 1);
    EXPECT_EQ(reopened.affixEncounters().size(), 1);
}

TEST_F(WordStoreFiles, AreReadAloneEachAndWholeOrNotAtAll)
{
    save("run");
    store.addSentenceNote({});
    QByteArray words = *readFile(paths.words);
    ASSERT_TRUE(replaceFile(paths.words, words.replace("\"lookupCount\": 1", "\"lookupCount\": \"1\"")));
    WordStore reopened(paths, clock, config, log);
    EXPECT_TRUE(reopened.entries().isEmpty());
    EXPECT_EQ(reopened.sentenceNotes().size(), 1);
}

TEST_F(WordStoreFiles, BuryWhatIsDeletedAlsoTwice)
{
    const QUuid run = save("run");
    store.remove(run);
    store.remove(run);
    EXPECT_TRUE(store.entries().isEmpty());
    ASSERT_EQ(store.deleted().size(), 2);
    EXPECT_EQ(store.deleted().first().id, run.toString(QUuid::WithoutBraces).toUpper());
    EXPECT_EQ(tombstonesOnDisk()->size(), 2);
    EXPECT_TRUE(entriesOnDisk().isEmpty());
}

TEST_F(WordStoreFiles, BuryTheRecordItselfWhenGivenItsOwnId)
{
    save("run");
    save("walk");
    store.addSentenceNote({QUuid::createUuid(), {}, {}, {}, {}, {}, {}, {}, {}});
    store.addSentenceNote({QUuid::createUuid(), {}, {}, {}, {}, {}, {}, {}, {}});
    const QUuid word = store.entries().first().id, note = store.sentenceNotes().first().id;
    store.remove(store.entries().first().id);
    store.deleteSentenceNote(store.sentenceNotes().first().id);
    EXPECT_EQ(store.deleted().first().id, idText(word));
    EXPECT_EQ(store.deleted().last().id, idText(note));
}

TEST_F(WordStoreFiles, DeletePartsOfAWordButNotItsDiscoveries)
{
    Explanation explanation = explained("run", "He ran.");
    explanation.grammar = QStringLiteral("past_simple");
    const WordEntry run = store.save(explanation, {}).entry;
    const AINote note{QUuid::createUuid(), {}, {}, {}, {}, {}, {}, {}, clock.now()};
    store.addNote(note, run.headword);
    store.deleteNote(note.id, QUuid::createUuid());
    EXPECT_TRUE(store.deleted().isEmpty()) << "an unknown word leaves no tombstone";
    store.deleteNote(note.id, run.id);
    EXPECT_EQ(word("run").notes, QList<AINote>()) << "emptied, not absent";
    store.deleteExample(run.examples.first().id, run.id);
    EXPECT_TRUE(word("run").examples.isEmpty());
    EXPECT_EQ(entriesOnDisk().first().notes, QList<AINote>());
    store.remove(run.id);
    EXPECT_EQ(store.unlockedGrammar().size(), 1);
    store.deleteGrammarEncounter(store.grammarEncounters().first().id);
    EXPECT_TRUE(store.unlockedGrammar().isEmpty());
    store.addSentenceNote(note);
    store.deleteSentenceNote(note.id);
    EXPECT_TRUE(store.sentenceNotes().isEmpty());
    EXPECT_EQ(tombstonesOnDisk()->size(), 5);
}

TEST_F(WordStoreFiles, ForgetTheCountersOfAnotherDay)
{
    writeRecordFile(paths.reviewStats, ReviewStats{QStringLiteral("2026-02-28"), 5, 5});
    EXPECT_EQ(WordStore(paths, clock, config, log).stats().reviewed, 0);
    writeRecordFile(paths.reviewStats, ReviewStats{QStringLiteral("2026-03-01"), 5, 4});
    EXPECT_EQ(
        WordStore(paths, clock, config, log).stats(), (ReviewStats{QStringLiteral("2026-03-01"), 5, 4}));
}

TEST_F(WordStoreFiles, TellObserversBeforeAChangeTakesEffect)
{
    QList<qsizetype> sizes;
    QList<WordEntry> taken;
    QObject::connect(&store, &WordStore::changing, [&] {
        sizes.append(store.entries().size());
        taken = store.entries();
    });
    const QUuid run = save("run");
    EXPECT_TRUE(sizes.contains(0));
    store.setWantToLearn(run, true);
    EXPECT_EQ(taken.first().wantToLearn, std::nullopt) << "what was taken stays as it was";
    QSignalSpy spy(&store, &WordStore::changing);
    store.applyReview(run, Rating::good, LogKind::review);
    EXPECT_GE(spy.count(), 2);
}

TEST(WordStore, WorksInMemoryWhenNothingCanBeWritten)
{
    const AppPaths nowhere(QStringLiteral("/proc/nowhere"));
    ManualClock clock;
    ConfigStore config(nowhere, clock);
    LearningLog log(nowhere, clock);
    WordStore store(nowhere, clock, config, log);
    const QUuid id = store.save(Notebook::explained("run"), {}).entry.id;
    EXPECT_EQ(store.fillSlots(0), 1);
    EXPECT_EQ(store.applyReview(id, Rating::good, LogKind::review), ReviewOutcome::normal);
    store.remove(id);
    EXPECT_EQ(store.deleted().size(), 1);
}

} // namespace
