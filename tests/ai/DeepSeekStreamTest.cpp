#include "ai/DeepSeekClient.h"
#include "ai/TransportError.h"
#include "support/Await.h"
#include "support/Printers.h"
#include "support/ScriptedServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Script = ScriptedServer::Script;

namespace {

QByteArray event(const QByteArray &content)
{
    return R"(data: {"choices":[{"delta":{"content":")" + content + "\"}}]}\n\n";
}

class DeepSeekStreamTest : public testing::Test {
protected:
    DeepSeekStreamTest()
    {
        config.apiKey = u"sk-1"_s;
        config.baseURL = server.address();
    }

    QCoro::AsyncGenerator<QString> stream(std::stop_token stop = {}, std::chrono::milliseconds patience = 60s)
    {
        const QList<ChatMessage> messages{{u"system"_s, u"s"_s}, {u"user"_s, u"问"_s}};
        return DeepSeekClient(config, network, patience).streamChat(messages, 0.7, std::move(stop));
    }
    QStringList answer(Script script)
    {
        server.answer(std::move(script));
        return RunningStream(stream()).result();
    }
    QString failure(Script script)
    {
        try {
            answer(std::move(script));
        } catch (const AIError &error) {
            return error.text();
        }
        return u"no failure"_s;
    }

    ScriptedServer server;
    QNetworkAccessManager network;
    AppConfig config;
};

TEST_F(DeepSeekStreamTest, SendsTheConversationAsItStands)
{
    EXPECT_EQ(answer(Script::response(200, event("好") + event(" 的 ") + "data: [DONE]\n\n")),
        (QStringList{u"好"_s, u" 的 "_s}));
    const QJsonObject expected{
        {u"model"_s, u"deepseek-chat"_s},
        {u"messages"_s,
            QJsonArray{QJsonObject{{u"role"_s, u"system"_s}, {u"content"_s, u"s"_s}},
                QJsonObject{{u"role"_s, u"user"_s}, {u"content"_s, u"问"_s}}}},
        {u"temperature"_s, 0.7},
        {u"stream"_s, true},
    };
    EXPECT_EQ(QJsonDocument::fromJson(server.requests().first().body).object(), expected);
}

TEST_F(DeepSeekStreamTest, SendsNothingBeforeItIsRead)
{
    {
        const auto unread = stream();
    }
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW(RunningStream(stream(source.get_token())).result(), Cancelled);
    config.apiKey = u" "_s;
    EXPECT_THROW(RunningStream(stream()).result(), AIError);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(DeepSeekStreamTest, ACharacterCutByTheNetworkIsWholeAgain)
{
    const QByteArray body = event("不") + event("情") + "\r";
    const qsizetype inside = body.indexOf("情") + 1;
    EXPECT_EQ(answer(Script::chunked(200)
                         .send(Script::chunk(body.first(inside)))
                         .send(Script::chunk(body.sliced(inside)))
                         .send(Script::chunk("\n" + event("愿")))
                         .send(Script::chunk(""))),
        (QStringList{u"不"_s, u"情"_s, u"愿"_s}));
}

TEST_F(DeepSeekStreamTest, APieceIsThereBeforeTheNextIsSent)
{
    server.answer(Script::chunked(200)
                      .send(Script::chunk(event("一")))
                      .hold()
                      .send(Script::chunk(event("二")))
                      .close());
    RunningStream running(stream());
    ASSERT_TRUE(waitUntil([&running] { return !running.pieces().isEmpty(); }));
    EXPECT_EQ(running.pieces(), QStringList{u"一"_s});
    server.release();
    EXPECT_EQ(running.result(), (QStringList{u"一"_s, u"二"_s}));
}

TEST_F(DeepSeekStreamTest, ABodyThatIsCutOffEndsAsIfComplete)
{
    const QByteArray two = event("一") + event("二");
    const QStringList pieces{u"一"_s, u"二"_s};
    EXPECT_EQ(answer(Script::chunked(200).send(Script::chunk(two)).close()), pieces);
    EXPECT_EQ(answer(Script::chunked(200).send(Script::chunk(two)).send("40\r\ndata: {").close()), pieces);
    EXPECT_EQ(answer(Script::unbounded(200).send(two.trimmed()).close()), pieces);
    EXPECT_EQ(answer(Script::response(200, two + "data: garbage")), pieces);
    EXPECT_EQ(answer(Script::response(200, "")), QStringList());
}

TEST_F(DeepSeekStreamTest, DoneEndsTheReadingThoughTheConnectionStaysOpen)
{
    server.answer(Script::chunked(200).send(Script::chunk(event("一") + "data: [DONE]\n")).hold());
    EXPECT_EQ(RunningStream(stream()).result(), QStringList{u"一"_s});
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }));
}

TEST_F(DeepSeekStreamTest, ARefusalIsReadOnlyAsFarAsItIsShown)
{
    EXPECT_EQ(failure(Script::response(401, "no")), u"API key 不正确，请在设置里检查一下。"_s);
    EXPECT_EQ(failure(Script::response(402, "no")), u"DeepSeek 账户余额不足，请先充值。"_s);
    EXPECT_EQ(failure(Script::response(500, "a\nb\r\nc")), u"DeepSeek 返回错误 500：abc"_s);
    EXPECT_EQ(failure(Script::response(500, QByteArray(300, 'x'))),
        u"DeepSeek 返回错误 500："_s + QString(200, u'x'));
    EXPECT_EQ(failure(Script::response(500, "a\n\xFF")), u"DeepSeek 返回错误 500："_s);
    EXPECT_EQ(
        failure(Script::response(302, "moved", {"Location: /elsewhere"})), u"DeepSeek 返回错误 302：moved"_s);
    EXPECT_EQ(server.requests().size(), 6);

    const QByteArray line = QByteArray(101, 'y') + "\n";
    EXPECT_EQ(failure(Script::chunked(500).send(Script::chunk(line)).send(Script::chunk(line)).hold()),
        u"DeepSeek 返回错误 500："_s + QString(200, u'y'));
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }));
}

TEST_F(DeepSeekStreamTest, ABrokenWayIsATransportError)
{
    const auto kindOf = [this](Script script) {
        server.answer(std::move(script));
        RunningStream running(stream({}, 200ms));
        try {
            running.result();
        } catch (const TransportError &error) {
            return std::pair(error.kind(), running.pieces());
        }
        ADD_FAILURE() << "no transport error";
        return std::pair(TransportError::Kind::other, QStringList());
    };
    using Kind = TransportError::Kind;
    EXPECT_EQ(kindOf(Script().hold()), std::pair(Kind::timedOut, QStringList()));
    EXPECT_EQ(kindOf(Script::chunked(200).send(Script::chunk(event("一"))).hold()),
        std::pair(Kind::timedOut, QStringList{u"一"_s}));
    EXPECT_EQ(kindOf(Script().close()), std::pair(Kind::lost, QStringList()));
    EXPECT_EQ(kindOf(Script::chunked(500).send(Script::chunk("busy")).close()),
        std::pair(Kind::lost, QStringList()));
}

TEST_F(DeepSeekStreamTest, StoppingClosesTheConnectionAtOnce)
{
    server.answer(Script::chunked(200).send(Script::chunk(event("一"))).hold());
    std::stop_source source;
    RunningStream running(stream(source.get_token()));
    ASSERT_TRUE(waitUntil([&running] { return !running.pieces().isEmpty(); }));
    source.request_stop();
    EXPECT_TRUE(running.isDone());
    EXPECT_THROW(running.result(), Cancelled);
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }));
}

TEST_F(DeepSeekStreamTest, LettingGoOfTheStreamClosesTheConnection)
{
    server.answer(Script::chunked(200).send(Script::chunk(event("一") + event("二"))).hold());
    EXPECT_EQ(RunningStream(stream(), 1).result(), QStringList{u"一"_s});
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }));
}

TEST_F(DeepSeekStreamTest, ALargeAnswerArrivesWhole)
{
    const QByteArray body = event(QByteArray("词").repeated(50)).repeated(2000);
    QString whole;
    for (const QString &piece : answer(Script::response(200, body)))
        whole += piece;
    EXPECT_EQ(whole, u"词"_s.repeated(100000));
}

} // namespace
