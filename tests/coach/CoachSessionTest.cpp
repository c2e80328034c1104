#include "coach/CoachSession.h"

#include "ai/AIError.h"
#include "ai/DeepSeekClient.h"
#include "coach/CoachPrompts.h"
#include "support/Await.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/ScriptedServer.h"
#include "support/TimeZone.h"

#include <QNetworkAccessManager>

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString question = u"为什么 ngl 老忘？"_s;
const QString closing = u"\n（像教练聊天一样回答，一般 150～300 字，具体到我的词。）"_s;

class CoachSessionTest : public testing::Test, protected Notebook {
protected:
    CoachSessionTest() { restart(); }

    void restart(AIClientFactory newClient = {})
    {
        session.reset();
        session = std::make_unique<CoachSession>(
            paths, clock, config,
            [this](Timestamp now) {
                EXPECT_EQ(now, clock.now());
                return u"记录 "_s + QString::number(++records);
            },
            newClient ? newClient : ai.factory());
    }

    /// A whole briefing of that text, as the first opening of a day brings it.
    void brief(const QString &text)
    {
        session->open();
        ai.piece(text);
        ai.endStream();
    }

    void ask(const QString &text)
    {
        session->setInput(text);
        session->send();
    }

    /// What stands on screen, with C or L for who said it.
    QStringList screen() const { return said(session->messages()); }
    QStringList onDisk() const
    {
        const auto days = readRecordFile<QList<CoachDay>>(paths.coach).value_or(QList<CoachDay>());
        return days.isEmpty() ? QStringList() : said(days.last().messages);
    }
    static QStringList said(const QList<CoachMessage> &messages)
    {
        QStringList texts;
        for (const CoachMessage &message : messages)
            texts.append((message.fromCoach ? u"C "_s : u"L "_s) + message.text);
        return texts;
    }

    TimeZone zone{"Asia/Shanghai"};
    FakeAI ai;
    int records = 0;
    std::unique_ptr<CoachSession> session;
};

TEST_F(CoachSessionTest, BriefsAtTheFirstOpeningOfADay)
{
    session->open();
    ASSERT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(ai.calls().first().temperature, 0.7);
    EXPECT_EQ(ai.calls().first().messages,
        (QList<ChatMessage>{{u"system"_s, prompts::coach()},
            {u"user"_s, u"这是学习记录：\n记录 1"_s + prompts::briefingTask()}}));
    EXPECT_TRUE(session->isAnswering());
    EXPECT_THAT(screen(), ElementsAre(u"C "_s));
    session->open();
    ai.piece(u"你"_s);
    ai.piece(u"好"_s);
    EXPECT_TRUE(session->isStreaming(session->messages().first()));
    EXPECT_THAT(screen(), ElementsAre(u"C 你好"_s));
    EXPECT_THAT(onDisk(), IsEmpty());
    ai.endStream();
    EXPECT_FALSE(session->isAnswering());
    EXPECT_THAT(onDisk(), ElementsAre(u"C 你好"_s));

    session->open();
    restart();
    session->open();
    EXPECT_THAT(screen(), ElementsAre(u"C 你好"_s));
    EXPECT_EQ(ai.calls().size(), 1) << "the same day asks once";
}

TEST_F(CoachSessionTest, SendsTheRecordAndAllThatWasSaid)
{
    brief(u"简报"_s);
    session->send(u" 长长的问题\n"_s, u"短"_s);
    EXPECT_THAT(screen(), ElementsAre(u"C 简报"_s, u"L 长长的问题"_s, u"C "_s));
    EXPECT_EQ(session->messages()[1].shown, u"短"_s);
    ask(u"还没答完"_s);
    EXPECT_EQ(session->input(), u"还没答完"_s) << "nothing is sent while an answer comes";
    ai.piece(u"回答"_s);
    ai.endStream();

    session->setInput(u" \n "_s);
    session->send();
    EXPECT_EQ(ai.calls().size(), 2);
    ask(u" "_s + question + u'\n');
    EXPECT_EQ(session->input(), QString());
    EXPECT_EQ(ai.calls().last().messages,
        (QList<ChatMessage>{{u"system"_s, prompts::coach()},
            {u"user"_s, u"这是我现在的学习记录：\n记录 3\n\n先写今天的简报。"_s}, {u"assistant"_s, u"简报"_s},
            {u"user"_s, u"长长的问题"_s}, {u"assistant"_s, u"回答"_s}, {u"user"_s, question + closing}}));
    ai.endStream();
    EXPECT_THAT(onDisk(), ElementsAre(u"C 简报"_s, u"L 长长的问题"_s, u"C 回答"_s, u"L "_s + question))
        << "an answer without a word is not kept";
}

TEST_F(CoachSessionTest, GivesATypedQuestionBackWhenItFails)
{
    brief(u"简报"_s);
    ask(question);
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_THAT(screen(), ElementsAre(u"C 简报"_s));
    EXPECT_EQ(session->input(), question);
    EXPECT_EQ(session->error(), AIError(AIError::Kind::noBalance).text());
    EXPECT_FALSE(session->isAnswering());
    EXPECT_THAT(onDisk(), ElementsAre(u"C 简报"_s));

    session->send();
    EXPECT_EQ(session->error(), QString());
    session->setInput(u"下一句"_s);
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_EQ(session->input(), question + u"\n下一句"_s) << "what was typed meanwhile stays too";
}

TEST_F(CoachSessionTest, KeepsAChipsBubbleWhenItFails)
{
    brief(u"简报"_s);
    session->setInput(u"草稿"_s);
    session->send(u"全文"_s, u"标签"_s);
    ai.fail(AIError(AIError::Kind::unauthorized));
    EXPECT_THAT(screen(), ElementsAre(u"C 简报"_s, u"L 全文"_s));
    EXPECT_EQ(session->input(), u"草稿"_s);
    EXPECT_THAT(onDisk(), ElementsAre(u"C 简报"_s, u"L 全文"_s));
}

TEST_F(CoachSessionTest, KeepsWhatCameBeforeAFailure)
{
    brief(u"简报"_s);
    ask(question);
    ai.piece(u"一半"_s);
    ai.fail(std::runtime_error("lost"));
    EXPECT_THAT(screen(), ElementsAre(u"C 简报"_s, u"L "_s + question, u"C 一半"_s));
    EXPECT_EQ(onDisk(), screen());
    EXPECT_EQ(session->input(), QString());
    EXPECT_EQ(session->error(), u"lost"_s);
}

TEST_F(CoachSessionTest, AFailedBriefingLeavesAnEmptyScreenToTryAgain)
{
    session->open();
    ai.fail(AIError(AIError::Kind::noKey));
    EXPECT_THAT(screen(), IsEmpty());
    EXPECT_FALSE(session->error().isEmpty());
    session->open();
    EXPECT_EQ(session->error(), QString());
    ai.piece(u"简报"_s);
    ai.endStream();
    EXPECT_THAT(onDisk(), ElementsAre(u"C 简报"_s));
}

TEST_F(CoachSessionTest, KeepsWhatCameBeforeAStop)
{
    brief(u"简报"_s);
    ask(question);
    ai.piece(u"一半"_s);
    session->stop();
    EXPECT_FALSE(session->isAnswering());
    EXPECT_EQ(session->error(), QString());
    EXPECT_THAT(screen(), ElementsAre(u"C 简报"_s, u"L "_s + question, u"C 一半"_s));
    EXPECT_EQ(onDisk(), screen());
    EXPECT_EQ(ai.waiting(), 0) << "the exchange is over";
    ask(u"再来"_s);
    EXPECT_EQ(ai.waiting(), 1);
}

TEST_F(CoachSessionTest, APieceForAReplacedConversationLandsNowhere)
{
    session->open();
    ai.piece(u"旧"_s);
    session->writeBriefing();
    EXPECT_THAT(screen(), ElementsAre(u"C "_s));
    EXPECT_TRUE(session->isAnswering());
    ASSERT_EQ(ai.waiting(), 1) << "the old exchange is over";
    ai.piece(u"新"_s);
    ai.endStream();
    EXPECT_THAT(screen(), ElementsAre(u"C 新"_s));
    EXPECT_EQ(onDisk(), screen());
}

TEST_F(CoachSessionTest, StopsInTheMiddleOfAPiece)
{
    QObject::connect(session.get(), &CoachSession::messageGrew, [this] { session->stop(); });
    brief(u"简报"_s);
    EXPECT_THAT(screen(), ElementsAre(u"C 简报"_s));
    EXPECT_FALSE(session->isAnswering());
}

TEST_F(CoachSessionTest, MayEndInTheMiddleOfAnAnswer)
{
    session->open();
    ai.piece(u"半"_s);
    session.reset();
    EXPECT_EQ(ai.waiting(), 0);

    restart();
    QObject::connect(session.get(), &CoachSession::messageGrew, [this] { session.reset(); });
    session->open();
    ai.piece(u"半"_s);
    EXPECT_EQ(session, nullptr);
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_THAT(onDisk(), IsEmpty());
}

TEST_F(CoachSessionTest, NoticesANewDayWhenOpened)
{
    brief(u"长"_s.repeated(901));
    clock.advance(24h);
    ask(question);
    ai.piece(u"答"_s);
    ai.endStream();
    EXPECT_EQ(session->messages().size(), 3) << "the screen stays until the next opening";
    ASSERT_EQ(session->history().size(), 2);
    EXPECT_EQ(session->history().last().day, u"2026-03-02"_s);
    EXPECT_EQ(session->history().last().messages.size(), 3) << "and is saved under the new day";

    clock.advance(24h);
    session->open();
    EXPECT_THAT(screen(), ElementsAre(u"C "_s));
    const QString asked = ai.calls().last().messages.last().content;
    EXPECT_TRUE(asked.startsWith(u"这是学习记录：\n记录 3\n\n你上次（2026-03-02）写的简报：\n长"_s));
    EXPECT_EQ(asked.count(u'长'), 900 + prompts::briefingTask().count(u'长'));
    EXPECT_TRUE(asked.endsWith(u"长"_s + prompts::briefingTask()));
}

TEST_F(CoachSessionTest, ANewDayDoesNotCutAnAnswerOff)
{
    brief(u"简报"_s);
    ask(question);
    ai.piece(u"一"_s);
    clock.advance(24h);
    session->open();
    ai.piece(u"二"_s);
    ai.endStream();
    EXPECT_EQ(screen().last(), u"C 一二"_s);
    EXPECT_EQ(ai.calls().size(), 2);
}

TEST_F(CoachSessionTest, KeepsTwentyNineDays)
{
    for (int day = 0; day < 30; ++day) {
        brief(QString::number(day));
        clock.advance(24h);
    }
    restart();
    ASSERT_EQ(session->history().size(), 29);
    EXPECT_EQ(session->history().first().day, u"2026-03-02"_s);
    EXPECT_EQ(session->history().last().messages.first().text, u"29"_s);
}

TEST_F(CoachSessionTest, TakesABrokenHistoryAsNone)
{
    replaceFile(paths.coach, R"([{"day":"2026-03-01","messages":[{"id":"x"}]}])");
    restart();
    EXPECT_THAT(session->history(), IsEmpty());
    brief(u"简报"_s);
    EXPECT_THAT(onDisk(), ElementsAre(u"C 简报"_s));
    EXPECT_FALSE(readFile(paths.coach)->contains("shown")) << "what is absent is left out";
}

TEST_F(CoachSessionTest, QuotesTheLatestDayOnWhichTheCoachSpoke)
{
    const auto coach = [](const char16_t *text) {
        return CoachMessage{QUuid::createUuid(), true, QString::fromUtf16(text), std::nullopt};
    };
    const CoachMessage learner{QUuid::createUuid(), false, u"问"_s, std::nullopt};
    const auto quoted = [this](const QList<CoachDay> &days) {
        writeRecordFile(paths.coach, days);
        const auto briefing = CoachHistory(paths).briefingBefore(u"2026-03-04"_s);
        return briefing ? briefing->day + briefing->text : u"none"_s;
    };
    const CoachDay first{u"2026-03-01"_s, {learner, coach(u"甲"), coach(u"乙")}};
    const CoachDay silent{u"2026-03-02"_s, {learner}}, empty{u"2026-03-03"_s, {coach(u""), coach(u"丙")}};
    EXPECT_EQ(quoted({}), u"none"_s);
    EXPECT_EQ(quoted({first, {u"2026-03-04"_s, {coach(u"今天")}}}), u"2026-03-01甲"_s);
    EXPECT_EQ(quoted({first, silent}), u"2026-03-01甲"_s);
    EXPECT_EQ(quoted({first, empty}), u"none"_s) << "no older day stands in for it";
}

/// The same over the network, with the client of the program.
class CoachOverHttp : public CoachSessionTest {
protected:
    CoachOverHttp()
    {
        configure([this](AppConfig &changed) {
            changed.apiKey = u"sk-1"_s;
            changed.baseURL = server.address();
        });
        restart([this](const AppConfig &settings) {
            return std::make_unique<DeepSeekClient>(settings, network);
        });
    }
    ~CoachOverHttp() override { session.reset(); }

    static QByteArray event(const QByteArray &content)
    {
        return R"(data: {"choices":[{"delta":{"content":")" + content + "\"}}]}\n\n";
    }
    bool waitForEnd()
    {
        return waitUntil([this] { return !session->isAnswering(); });
    }

    using Script = ScriptedServer::Script;
    ScriptedServer server;
    QNetworkAccessManager network;
};

TEST_F(CoachOverHttp, StreamsABriefing)
{
    server.answer(Script::response(200, event("简") + event("报") + "data: [DONE]\n\n"));
    session->open();
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(screen(), ElementsAre(u"C 简报"_s));
    EXPECT_EQ(onDisk(), screen());
}

TEST_F(CoachOverHttp, FailsBeforeAndAfterTheFirstPiece)
{
    server.answer(Script::response(402, "{}"));
    ask(question);
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(screen(), IsEmpty());
    EXPECT_EQ(session->input(), question);
    EXPECT_EQ(session->error(), u"DeepSeek 账户余额不足，请先充值。"_s);

    configure([](AppConfig &changed) { changed.apiKey.clear(); });
    session->send();
    EXPECT_EQ(session->error(), AIError(AIError::Kind::noKey).text());
    EXPECT_EQ(session->input(), question);
}

TEST_F(CoachOverHttp, StoppingAndEndingReachTheServer)
{
    for (const int closed : {1, 2}) {
        server.answer(Script::chunked(200).send(Script::chunk(event("一半"))).hold());
        session->writeBriefing();
        ASSERT_TRUE(waitUntil([this] { return screen().last() == u"C 一半"_s; }));
        if (closed == 1) {
            session->stop();
            EXPECT_THAT(onDisk(), ElementsAre(u"C 一半"_s));
        } else {
            session.reset();
        }
        EXPECT_TRUE(waitUntil([this, closed] { return server.closedByClient() == closed; }));
    }
}

} // namespace
