#include "frame/RecordFile.h"
#include "support/Printers.h"
#include "sync/BundleForm.h"
#include "sync/Content.h"
#include "sync/Device.h"
#include "sync/RandomLearner.h"

#include <QFile>

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// A device whose files were damaged, removed or put back from a backup syncs with a server that has not moved
// since: nothing goes from the server, and all comes back to the device.
namespace {

using testing::ElementsAre;

struct LossTest : testing::Test {
    void learnFor(quint32 first, quint32 end)
    {
        for (quint32 seed = first; seed < end; ++seed) {
            device.clock.advance(1s);
            learn(device, seed);
        }
    }

    /// A day's work on the server, and the same once more in an earlier form at `older`.
    void SetUp() override
    {
        learnFor(0, 150);
        device.syncWith(server);
        for (const QString &path : lists)
            older.append(*readFile(path));
        learnFor(150, 260);
        QFile::remove(device.paths.syncState); // so that what is on the server has the order of a merge
        device.syncWith(server);
        before = serverDocument();
        ASSERT_FALSE(before.words.isEmpty() || before.notes.isEmpty() || before.grammar.isEmpty()
            || before.affixes.isEmpty());
        requests();
    }

    SyncBundle serverDocument() const { return decode<SyncBundle>(server.document).value_or(SyncBundle()); }

    /// The conditions of the requests since the last call, with a "w" before those of writes.
    QStringList requests()
    {
        QStringList result;
        for (const SyncRequest &request : std::exchange(device.network.requests, {})) {
            const bool isPut = request.method == SyncRequest::Method::put;
            const auto condition = isPut ? request.ifMatch : request.ifNoneMatch;
            result.append((isPut ? u"w"_s : u""_s) + QString::fromLatin1(condition.value_or("any")));
        }
        return result;
    }

    QString version() const { return u'"' + QString::number(server.version) + u'"'; }

    void expectAllIsThere()
    {
        const QString held = BundleForm::hash(BundleForm::normalized(device.document()));
        EXPECT_EQ(BundleForm::hashOfJson(server.document), held);
        const QSet<QString> kept = contentOf(serverDocument());
        EXPECT_EQ(contentOf(before) - kept, QSet<QString>());
        const auto ids = [](const QList<Tombstone> &deleted) {
            QSet<QString> result;
            for (const Tombstone &tombstone : deleted)
                result.insert(tombstone.id);
            return result;
        };
        EXPECT_EQ(ids(before.deleted) - ids(serverDocument().deleted), QSet<QString>());
    }

    /// From the damage to the server: a round that brings all back, a quiet one, and a change.
    void expectRecovery()
    {
        device.restart();
        const QString asked = version();
        EXPECT_TRUE(device.syncWith(server));
        EXPECT_THAT(requests(), ElementsAre(asked, u"any"_s));
        expectAllIsThere();
        EXPECT_TRUE(device.syncWith(server));
        EXPECT_THAT(requests(), ElementsAre(version()));
    }

    /// What a synced change of a word made comes back when the words from before it are put in its place.
    void expectBackAfter(const std::function<void()> &change)
    {
        const QByteArray words = *readFile(device.paths.words);
        change();
        device.syncWith(server);
        requests();
        const QList<WordEntry> changed = BundleForm::normalized(device.document()).words;
        ASSERT_TRUE(replaceFile(device.paths.words, words));
        expectRecovery();
        EXPECT_EQ(BundleForm::normalized(device.document()).words, changed);
    }

    Device device;
    MemoryServer server;
    const QStringList lists{
        device.paths.words, device.paths.notes, device.paths.grammar, device.paths.affixes};
    QList<QByteArray> older;
    SyncBundle before;
};

QByteArray withoutATime(QByteArray json)
{
    return json.replace(json.lastIndexOf("Z\""), 1, "?");
}

TEST_F(LossTest, AListThatIsDamagedMissingOrOlderEmptiesNothing)
{
    for (qsizetype i = 0; i < lists.size(); ++i) {
        SCOPED_TRACE(lists[i].toStdString());
        const QByteArray whole = *readFile(lists[i]);
        const QByteArray damaged[]{withoutATime(whole), whole.first(whole.size() / 2), {}};
        for (const QByteArray &bytes : damaged) {
            const QStringList kept = DamagedFiles::keptIn(device.directory.path());
            ASSERT_TRUE(replaceFile(lists[i], bytes));
            expectRecovery();
            const QStringList keptNow = DamagedFiles::keptIn(device.directory.path());
            ASSERT_EQ(keptNow.size(), kept.size() + 1);
            EXPECT_EQ(readFile(device.directory.filePath(keptNow.last())), bytes);
            device.clock.advance(1s);
        }
        ASSERT_TRUE(QFile::remove(lists[i]));
        expectRecovery();
        ASSERT_NE(older[i], *readFile(lists[i]));
        ASSERT_TRUE(replaceFile(lists[i], older[i]));
        expectRecovery();
    }
}

TEST_F(LossTest, WhatIsLearnedBehindADamageIsNotLostEither)
{
    ASSERT_TRUE(replaceFile(device.paths.words, withoutATime(*readFile(device.paths.words))));
    ASSERT_TRUE(QFile::remove(device.paths.grammar));
    device.restart();
    learnFor(300, 340);
    const SyncBundle learned = device.document();
    EXPECT_TRUE(device.syncWith(server));
    EXPECT_TRUE(device.syncWith(server));
    const QSet<QString> kept = contentOf(serverDocument());
    QSet<QUuid> dead;
    for (const Tombstone &tombstone : learned.deleted)
        dead.insert(QUuid::fromString(tombstone.id));
    EXPECT_EQ(contentOf(learned, dead) - kept, QSet<QString>());
    EXPECT_EQ(contentOf(before, dead) - kept, QSet<QString>());
}

TEST_F(LossTest, TombstonesCountersSettingsAndProgressComeBackAsWell)
{
    ASSERT_TRUE(QFile::remove(device.paths.deleted));
    expectRecovery();
    ASSERT_GT(device.store().stats().reviewed, 0);
    ASSERT_TRUE(replaceFile(device.paths.reviewStats, "{"));
    expectRecovery();

    AppConfig config = device.config().config();
    const StudySettings settings = *config.studySettings();
    config.studySettingsAt.clear();
    writeRecordFile(device.paths.config, config, FileMode::ownerOnly);
    expectRecovery();
    EXPECT_EQ(device.config().config().studySettings(), settings);

    const WordEntry word = device.store().entries().first();
    device.clock.advance(1s);
    expectBackAfter([&] { device.store().applyReview(word.id, Rating::good, LogKind::review); });
    expectBackAfter([&] { device.store().addNote({.id = QUuid::createUuid()}, word.headword); });
}

TEST_F(LossTest, ALogThatIsMissingOrHasATornLineComesBack)
{
    const QByteArray log = *readFile(device.paths.log);
    ASSERT_TRUE(QFile::remove(device.paths.log));
    expectRecovery();
    EXPECT_EQ(readFile(device.paths.log), log);

    const qsizetype end = log.lastIndexOf('\n', -2);
    const QByteArray torn = log.sliced(end + 1, 30) + "\xe4\xbd";
    ASSERT_TRUE(replaceFile(device.paths.log, log.first(end + 1) + torn));
    expectRecovery();
    EXPECT_EQ(readFile(device.paths.log), log + torn + '\n');

    const QByteArray inTheMiddle = QByteArray("\xff") + log;
    ASSERT_TRUE(replaceFile(device.paths.log, inTheMiddle));
    expectRecovery();
    EXPECT_EQ(readFile(device.paths.log)->size(), log.size() + log.indexOf('\n') + 2);
}

TEST_F(LossTest, AnHonestChangeIsOneConditionalReadAndOneWrite)
{
    int writes = 0;
    for (quint32 seed = 400; seed < 480; ++seed) {
        SCOPED_TRACE(seed);
        if (seed % 10 == 0)
            device.restart();
        const QString asked = version();
        device.deleted.reset(); // one that joins a word saved since may cost a whole read: a sentence twice
        learnFor(seed, seed + 1);
        EXPECT_TRUE(device.syncWith(server));
        const QStringList sent = requests();
        EXPECT_TRUE(sent == QStringList{asked} || (sent == QStringList{asked, u'w' + asked}));
        writes += static_cast<int>(sent.size()) - 1;
    }
    EXPECT_GT(writes, 60);
}

TEST_F(LossTest, AQuietRoundNeitherReadsNorWritesWhatWasKnown)
{
    ASSERT_TRUE(QFile::remove(device.paths.syncKnown));
    EXPECT_TRUE(device.syncWith(server));
    EXPECT_THAT(requests(), ElementsAre(version()));
    EXPECT_FALSE(QFile::exists(device.paths.syncKnown));
}

// After an update from a version that remembered less, or where only one of the two files was put back.
TEST_F(LossTest, WhoRemembersNothingOfTheDocumentReadsItWhole)
{
    const QByteArray known = *readFile(device.paths.syncKnown);
    const QByteArray ofAnother = QByteArray(known).replace("\"hash\": \"", "\"hash\": \"0");
    const QByteArray unpackable = QByteArray(known).replace("\"records\": \"", "\"records\": \"AAAA*");
    for (const QByteArray &bytes : {QByteArray(), ofAnother, unpackable}) {
        const QString asked = version();
        device.store().addSentenceNote({.id = QUuid::createUuid(), .addedAt = device.clock.now()});
        ASSERT_TRUE(replaceFile(device.paths.syncKnown, bytes));
        EXPECT_TRUE(device.syncWith(server));
        EXPECT_THAT(requests(), ElementsAre(asked, u"any"_s, u'w' + asked));
        expectAllIsThere();
    }
}

} // namespace
