#include "wordbook/Deletions.h"

#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "support/Printers.h"
#include "sync/BundleForm.h"
#include "sync/Device.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A device whose learner deletes in the lists and takes it back.
struct Learner : Device {
    explicit Learner(quint32 seed = 1) : Device(seed) { }

    QUuid save(const QString &headword, const QString &sentence = {})
    {
        Explanation explanation;
        explanation.headword = headword;
        explanation.meaningZh = u"意思"_s;
        if (!sentence.isEmpty())
            explanation.sentence = sentence;
        clock.advance(1s);
        return store().save(explanation, {}).entry.id;
    }
    void remove(const QString &headword) { deletions.remove({.id = store().findHeadword(headword)->id}); }
    const WordEntry &word(const QString &headword) { return *store().findHeadword(headword); }
    QStringList headwords()
    {
        QStringList all;
        for (const WordEntry &entry : store().entries())
            all.append(entry.headword);
        return all;
    }

    Deletions deletions{store(), clock};
};

/// What a word is but for its id.
WordEntry withoutId(WordEntry word)
{
    word.id = {};
    return word;
}

class DeletionsTest : public testing::Test {
protected:
    /// Until nobody has anything new for the other.
    void syncAll()
    {
        for (int i = 0; i < 2; ++i)
            for (Learner *each : {&one, &two})
                EXPECT_TRUE(each->syncWith(server));
        const auto hash = [](Learner &each) {
            return BundleForm::hash(BundleForm::normalized(each.document()));
        };
        EXPECT_EQ(hash(one), hash(two));
        EXPECT_EQ(hash(one), BundleForm::hashOfJson(server.document));
    }

    Learner one{1}, two{2};
    MemoryServer server;
};

} // namespace

TEST_F(DeletionsTest, AWordReturnsToItsPlaceWithAllThatItHadUnderAnotherId)
{
    one.save(u"deploy"_s);
    const QUuid id = one.save(u"run"_s, u"She ran home."_s);
    one.save(u"flaky"_s);
    one.store().addNote({.id = QUuid::createUuid(), .question = u"为什么？"_s}, u"run"_s);
    one.store().startLearning(id);
    one.store().applyReview(id, Rating::good, LogKind::review);
    one.store().setSpellPractice(id, true);
    const WordEntry before = one.word(u"run"_s);
    const QStringList log = one.log().readLines();
    one.remove(u"run"_s);
    EXPECT_EQ(one.deletions.text(), u"已删除 run"_s);
    const auto place = one.deletions.undo();
    EXPECT_THAT(one.headwords(), ElementsAre(u"flaky"_s, u"run"_s, u"deploy"_s));
    EXPECT_EQ(one.word(u"run"_s).id, place->id);
    EXPECT_NE(place->id, id);
    EXPECT_EQ(withoutId(one.word(u"run"_s)), withoutId(before));
    EXPECT_EQ(one.store().deleted().last().id, idText(id)) << "the old one stays buried";
    EXPECT_EQ(one.log().readLines(), log) << "nothing was learned or saved by that";
    EXPECT_EQ(one.deletions.undo(), std::nullopt);

    one.restart();
    EXPECT_EQ(one.word(u"run"_s).id, place->id) << "it is on disk";
}

TEST_F(DeletionsTest, TheLatestComesBackFirstUntilTenSecondsAreOver)
{
    for (const QString &headword : {u"run"_s, u"deploy"_s, u"flaky"_s})
        one.save(headword);
    const AINote note{.id = QUuid::createUuid(), .original = u"It was\n done."_s, .addedAt = one.clock.now()};
    one.store().addSentenceNote(note);
    QStringList told;
    QObject::connect(&one.deletions, &Deletions::changed, [&] { told.append(one.deletions.text()); });
    one.remove(u"flaky"_s);
    one.clock.advance(9s);
    one.remove(u"deploy"_s);
    one.deletions.remove({.tab = WordListTab::notes, .id = note.id});
    one.deletions.remove({.tab = WordListTab::notes, .id = note.id}); // which is gone already
    one.clock.advance(9s);
    EXPECT_EQ(one.deletions.undo()->tab, WordListTab::notes);
    EXPECT_EQ(one.store().sentenceNotes().value(0).original, note.original);
    EXPECT_NE(one.store().sentenceNotes().value(0).id, note.id);
    EXPECT_NE(one.deletions.undo(), std::nullopt);
    one.clock.advance(9999ms);
    EXPECT_EQ(one.deletions.text(), u"已删除 flaky"_s);
    one.clock.advance(1ms);
    EXPECT_EQ(one.deletions.undo(), std::nullopt) << "its time is over";
    EXPECT_THAT(one.headwords(), ElementsAre(u"deploy"_s, u"run"_s));
    EXPECT_EQ(told.first(), u"已删除 flaky"_s);
    EXPECT_TRUE(told.contains(u"已删除 It was done."_s));
    EXPECT_EQ(told.last(), QString());
}

TEST_F(DeletionsTest, AWordThatWasSavedAgainMeanwhileTakesTheOldOneIn)
{
    const QUuid old = one.save(u"run"_s, u"She ran home."_s);
    one.store().setWantToLearn(old, true);
    one.save(u"deploy"_s);
    const Timestamp createdAt = one.word(u"run"_s).createdAt;
    one.remove(u"run"_s);
    const QUuid saved = one.save(u"Run"_s, u"Run the tests."_s);
    one.deletions.undo();
    EXPECT_THAT(one.headwords(), ElementsAre(u"deploy"_s, u"run"_s)) << "there is one, as old as the first";
    const WordEntry &run = one.word(u"run"_s);
    EXPECT_EQ(run.id, saved);
    EXPECT_EQ(run.createdAt, createdAt);
    EXPECT_EQ(run.examples.size(), 2);
    EXPECT_TRUE(run.isWanted());
    const SyncBundle before = BundleForm::normalized(one.document());
    syncAll();
    EXPECT_EQ(BundleForm::normalized(one.document()).words, before.words) << "the merge agrees";
}

// Whether the others hear of the deletion first, or of both at once.
TEST_F(DeletionsTest, AllDevicesAgreeOnAWordThatReturned)
{
    for (const bool isSyncedBetween : {true, false}) {
        one.save(u"run"_s, u"She ran home."_s);
        syncAll();
        const QUuid old = one.word(u"run"_s).id;
        two.store().recordLookup({.headword = u"run"_s}, {}); // on the copy that is about to go
        one.remove(u"run"_s);
        if (isSyncedBetween) {
            syncAll();
            EXPECT_THAT(two.headwords(), IsEmpty());
        }
        one.deletions.undo();
        const WordEntry returned = one.word(u"run"_s);
        syncAll();
        ASSERT_THAT(two.headwords(), ElementsAre(u"run"_s));
        EXPECT_NE(returned.id, old);
        EXPECT_EQ(two.word(u"run"_s).id, returned.id);
        EXPECT_EQ(two.word(u"run"_s).examples.size(), 1);
        one.network.requests.clear();
        EXPECT_TRUE(one.syncWith(server));
        EXPECT_EQ(one.network.requests.size(), 1) << "a quiet round";

        one.deletions.remove({.id = returned.id});
        syncAll();
        EXPECT_THAT(two.headwords(), IsEmpty()) << "and it can be deleted for good";
        one.clock.advance(10s);
    }
}

TEST_F(DeletionsTest, AWordThatAnotherDeviceSavedAgainBecomesOneWithTheOldOne)
{
    one.save(u"run"_s, u"She ran home."_s);
    syncAll();
    one.remove(u"run"_s);
    syncAll();
    two.clock.advance(1h);
    two.save(u"run"_s, u"Run the tests."_s);
    syncAll();
    one.deletions.undo();
    syncAll();
    ASSERT_THAT(two.headwords(), ElementsAre(u"run"_s));
    EXPECT_EQ(two.word(u"run"_s).examples.size(), 2);
}

} // namespace nimbrelle
