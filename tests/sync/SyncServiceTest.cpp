#include "sync/SyncService.h"

#include "frame/RecordFile.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "support/Printers.h"
#include "sync/BundleForm.h"
#include "sync/Device.h"
#include "sync/SyncError.h"

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

void save(Device &device, QStringView headword, QStringView site = u"a.example")
{
    Explanation explanation;
    explanation.headword = headword.toString();
    explanation.meaningZh = u"意思"_s;
    device.clock.advance(1s);
    device.store().save(explanation, {u"Browser"_s, u"https://"_s + site.toString(), {}});
}

void lookUp(Device &device, QStringView headword, QStringView site)
{
    Explanation explanation;
    explanation.headword = headword.toString();
    device.clock.advance(1s);
    device.store().recordLookup(explanation, {{}, u"https://"_s + site.toString(), {}});
}

SyncState stateOf(const Device &device)
{
    return readRecordFile<SyncState>(device.paths.syncState).value_or(SyncState{});
}

QString hashOf(Device &device)
{
    return BundleForm::hash(device.document());
}

QList<WordEntry> wordsOf(Device &device)
{
    return BundleForm::normalized(device.document()).words;
}

/// "GET", "GET "7"", "PUT "7"" for each request since the last call.
QStringList requestsOf(Device &device)
{
    QStringList result;
    for (const SyncRequest &request : device.network.requests) {
        const bool isPut = request.method == SyncRequest::Method::put;
        const auto condition = isPut ? request.ifMatch : request.ifNoneMatch;
        result.append(
            (isPut ? u"PUT "_s : u"GET "_s) + QString::fromLatin1(condition.value_or(QByteArray())));
    }
    device.network.requests.clear();
    return result;
}

struct SyncServiceTest : testing::Test {
    MemoryServer server;
    Device computer{1};
    Device phone{2};
};

TEST_F(SyncServiceTest, DoesNothingWhileNotConnected)
{
    AppConfig config = computer.config().config();
    config.syncPin.clear();
    computer.config().setConfig(config);
    EXPECT_TRUE(computer.syncWith(server));
    EXPECT_EQ(computer.network.sessions, 0);
    EXPECT_EQ(computer.sync().lastSyncAt(), std::nullopt);
}

TEST_F(SyncServiceTest, FirstRoundFillsAnEmptyServer)
{
    save(computer, u"run");
    EXPECT_TRUE(computer.syncWith(server));
    EXPECT_THAT(requestsOf(computer), ElementsAre(u"GET "_s, u"PUT \"0\""_s));
    EXPECT_EQ(BundleForm::hashOfJson(server.document), hashOf(computer));
    const SyncState expected{u"https://127.0.0.1:1"_s, 1, hashOf(computer), computer.clock.now()};
    EXPECT_EQ(stateOf(computer), expected);
    EXPECT_EQ(computer.sync().lastSyncAt(), computer.clock.now());
}

TEST_F(SyncServiceTest, QuietRoundIsOneConditionalRead)
{
    computer.syncWith(server);
    requestsOf(computer);
    computer.clock.advance(1h);
    EXPECT_TRUE(computer.syncWith(server));
    EXPECT_THAT(requestsOf(computer), ElementsAre(u"GET \"1\""_s));
    EXPECT_EQ(stateOf(computer).lastSyncAt, computer.clock.now());
    computer.restart();
    EXPECT_EQ(computer.sync().lastSyncAt(), computer.clock.now());
}

TEST_F(SyncServiceTest, LocalChangeIsWrittenWithoutAMerge)
{
    computer.syncWith(server);
    computer.clock.advance(-1h); // so that a merge would turn the two words round
    save(computer, u"first");
    computer.clock.advance(-1h);
    save(computer, u"second");
    requestsOf(computer);
    EXPECT_TRUE(computer.syncWith(server));
    EXPECT_THAT(requestsOf(computer), ElementsAre(u"GET \"1\""_s, u"PUT \"1\""_s));
    EXPECT_EQ(server.document, BundleForm::json(computer.document()));
    EXPECT_EQ(computer.store().entries().first().headword, u"second"_s);
}

TEST_F(SyncServiceTest, RemoteChangeIsTakenOverWithoutAWrite)
{
    save(computer, u"run");
    computer.syncWith(server);
    EXPECT_TRUE(phone.syncWith(server));
    EXPECT_THAT(requestsOf(phone), ElementsAre(u"GET "_s));
    EXPECT_EQ(phone.document().words, wordsOf(computer));
    EXPECT_EQ(phone.log().readLines(), computer.log().readLines());
    EXPECT_EQ(stateOf(phone).version, 1);
}

TEST_F(SyncServiceTest, ConflictReadsAndMergesAgain)
{
    computer.syncWith(server);
    requestsOf(computer);
    save(computer, u"run");
    const auto answer = computer.startSync();
    computer.network.answer(server.answer(computer.network.waiting()));
    save(phone, u"walk");
    phone.syncWith(server);
    computer.network.serve(server);
    EXPECT_EQ(*answer, true);
    EXPECT_THAT(requestsOf(computer), ElementsAre(u"GET \"1\""_s, u"PUT \"1\""_s, u"GET "_s, u"PUT \"2\""_s));
    EXPECT_TRUE(computer.store().findHeadword(u"walk"_s));
    EXPECT_EQ(stateOf(computer).version, 3);
}

TEST_F(SyncServiceTest, GivesUpAfterFourConflicts)
{
    computer.syncWith(server);
    const SyncState before = stateOf(computer);
    save(computer, u"run");
    requestsOf(computer);
    const auto answer = computer.startSync();
    for (int attempt = 0; attempt < 4; ++attempt) {
        computer.network.answer(server.answer(computer.network.waiting()));
        computer.network.answer({412, {}, {}});
    }
    EXPECT_EQ(*answer, false);
    EXPECT_EQ(requestsOf(computer).size(), 8);
    EXPECT_EQ(computer.sync().lastError(), u"服务器上的单词本一直在变，过一会儿再试"_s);
    EXPECT_EQ(computer.sync().lastErrorDetail(), u"busy"_s);
    EXPECT_EQ(stateOf(computer), before);
}

TEST_F(SyncServiceTest, WordSavedDuringAnyWaitIsNeitherLostNorCountedAsSynced)
{
    save(computer, u"before");
    const auto answer = computer.startSync();
    save(computer, u"reading");
    computer.network.answer(server.answer(computer.network.waiting()));
    save(computer, u"writing");
    EXPECT_FALSE(computer.network.waiting().body.contains("writing"));
    EXPECT_TRUE(computer.network.waiting().body.contains("reading"));
    computer.network.serve(server);
    EXPECT_EQ(*answer, true);
    EXPECT_NE(stateOf(computer).hash, hashOf(computer));
    computer.syncWith(server);
    EXPECT_TRUE(server.document.contains("writing"));

    // The same on the way of a merge, where the store is replaced between the waits.
    save(phone, u"phone");
    const auto phones = phone.startSync();
    save(phone, u"phone reading");
    phone.network.answer(server.answer(phone.network.waiting()));
    const QUuid before = phone.store().findHeadword(u"before"_s)->id;
    phone.store().remove(before);
    phone.network.serve(server);
    EXPECT_EQ(*phones, true);
    EXPECT_TRUE(server.document.contains("before"));
    phone.syncWith(server);
    computer.syncWith(server);
    EXPECT_FALSE(computer.store().find(before));
    EXPECT_TRUE(computer.store().findHeadword(u"phone reading"_s));
}

TEST_F(SyncServiceTest, LostAnswerToAWriteCostsNoSecondWrite)
{
    save(computer, u"run");
    const auto answer = computer.startSync();
    computer.network.answer(server.answer(computer.network.waiting()));
    server.answer(computer.network.waiting());
    computer.network.lose();
    EXPECT_EQ(*answer, false);
    EXPECT_EQ(computer.sync().lastError(), u"连不上同步服务器（没网，或者服务器停了）"_s);
    EXPECT_EQ(computer.sync().lastErrorDetail(), u"lost on the way"_s);
    EXPECT_FALSE(computer.sync().busy());
    requestsOf(computer);
    EXPECT_TRUE(computer.syncWith(server));
    EXPECT_THAT(requestsOf(computer), ElementsAre(u"GET "_s));
    EXPECT_EQ(computer.sync().lastError(), std::nullopt);
    EXPECT_EQ(stateOf(computer).version, 1);
}

// Equal ids keep the order of the arguments, so each device alone would write its own order again.
TEST_F(SyncServiceTest, DevicesWithTheSameContentInAnotherOrderDoNotWriteInTurn)
{
    save(computer, u"run", u"first.example");
    computer.syncWith(server);
    phone.syncWith(server);
    lookUp(computer, u"run", u"computer.example");
    lookUp(phone, u"run", u"phone.example");
    for (int round = 0; round < 2; ++round) {
        computer.syncWith(server);
        phone.syncWith(server);
    }
    const qint64 version = server.version;
    for (int round = 0; round < 3; ++round) {
        computer.syncWith(server);
        phone.syncWith(server);
    }
    EXPECT_EQ(server.version, version);
    EXPECT_EQ(wordsOf(computer), wordsOf(phone));
    EXPECT_THAT(*phone.store().entries().first().sourceKeys,
        testing::UnorderedElementsAre(u"first.example"_s, u"computer.example"_s, u"phone.example"_s));
}

TEST_F(SyncServiceTest, DevicesOnDifferentDaysDoNotWriteInTurn)
{
    save(computer, u"run");
    computer.store().fillSlots(0);
    computer.syncWith(server);
    phone.clock.advance(24h);
    phone.syncWith(server);
    phone.store().fillSlots(0);
    phone.store().applyReview(phone.store().entries().first().id, Rating::good, LogKind::review);
    for (int round = 0; round < 2; ++round) {
        phone.syncWith(server);
        computer.syncWith(server);
    }
    const qint64 version = server.version;
    phone.syncWith(server);
    computer.syncWith(server);
    EXPECT_EQ(server.version, version);
    EXPECT_EQ(computer.store().stats().newLearned, 1);
    EXPECT_EQ(phone.store().stats().reviewed, 1);
    EXPECT_EQ(wordsOf(computer), wordsOf(phone));
}

TEST_F(SyncServiceTest, ServerWithoutVersionsIsReadInFullEachTime)
{
    computer.startSync();
    computer.network.answer({404, {}, {}});
    computer.network.answer({200, {}, {}});
    EXPECT_EQ(stateOf(computer).version, 0);
    requestsOf(computer);
    computer.startSync();
    EXPECT_THAT(requestsOf(computer), ElementsAre(u"GET "_s));
}

TEST_F(SyncServiceTest, FailuresLeaveNotebookAndStateAsTheyWere)
{
    save(computer, u"run");
    computer.syncWith(server);
    const SyncState before = stateOf(computer);
    const SyncBundle document = computer.document();
    const std::pair<SyncResponse, QString> cases[]{
        {{401, {}, {}}, u"同步码里的密码不对"_s},
        {{500, {}, {}}, u"服务器出错了（500）"_s},
        {{200, "\"9\"", "{\"words\":"}, u"同步出错了：服务器上的单词本读不懂"_s},
    };
    for (const auto &[response, sentence] : cases) {
        const auto answer = computer.startSync();
        computer.network.answer(response);
        EXPECT_EQ(*answer, false);
        EXPECT_EQ(computer.sync().lastError(), sentence);
        EXPECT_EQ(stateOf(computer), before);
        EXPECT_EQ(computer.document(), document);
    }
}

TEST_F(SyncServiceTest, AnotherServerStartsFromNothing)
{
    save(computer, u"run");
    computer.syncWith(server);
    AppConfig config = computer.config().config();
    config.syncServer = u"https://127.0.0.1:2"_s;
    computer.config().setConfig(config);
    requestsOf(computer);
    MemoryServer other;
    EXPECT_TRUE(computer.syncWith(other));
    EXPECT_THAT(requestsOf(computer), ElementsAre(u"GET "_s, u"PUT \"0\""_s));
    EXPECT_EQ(stateOf(computer).server, config.syncServer);
}

TEST_F(SyncServiceTest, OneRoundAtATime)
{
    const auto first = computer.startSync();
    EXPECT_TRUE(computer.sync().busy());
    const auto second = computer.startSync();
    EXPECT_EQ(*second, true);
    EXPECT_EQ(computer.network.sessions, 1);
    computer.network.serve(server);
    EXPECT_EQ(*first, true);
    EXPECT_FALSE(computer.sync().busy());
}

TEST_F(SyncServiceTest, EndsInTheMiddleOfARoundWithoutATrace)
{
    save(computer, u"run");
    computer.startSync();
    computer.network.answer(server.answer(computer.network.waiting()));
    computer.restart();
    EXPECT_FALSE(computer.network.isWaiting());
    EXPECT_EQ(stateOf(computer), SyncState{});
    EXPECT_TRUE(computer.syncWith(server));
    EXPECT_EQ(server.version, 1);
}

} // namespace
