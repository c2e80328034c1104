#include "ai/DeepSeekClient.h"

#include "ai/Prompts.h"
#include "ai/ProviderConnections.h"
#include "http/TransportError.h"
#include "support/Await.h"
#include "support/ManualClock.h"
#include "support/Printers.h"
#include "support/ScriptedServer.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Script = ScriptedServer::Script;

namespace {

const QString badResponse = u"AI 返回的内容看不懂，再试一次吧。"_s;

QByteArray replyWith(const QString &content)
{
    const QJsonObject message{{u"role"_s, u"assistant"_s}, {u"content"_s, content}};
    const QJsonArray choices{QJsonObject{{u"index"_s, 0}, {u"message"_s, message}}};
    return QJsonDocument(QJsonObject{{u"id"_s, u"1"_s}, {u"choices"_s, choices}}).toJson();
}

QByteArray explanationReply()
{
    return replyWith(uR"({"headword":"run","meaning_zh":"跑","unknown":{}})"_s);
}

QByteArray event(const QByteArray &content)
{
    return R"(data: {"choices":[{"delta":{"content":")" + content + "\"}}]}\n\n";
}

QJsonObject message(const QString &role, const QString &content)
{
    return {{u"role"_s, role}, {u"content"_s, content}};
}

template <class Flow> QString failureOf(Flow flow)
{
    try {
        flow();
    } catch (const Failure &failure) {
        return failure.text();
    }
    return u"no failure"_s;
}

QString textOf(TransportError::Kind kind)
{
    return TransportError(kind).text();
}

class DeepSeekClientTest : public testing::Test {
protected:
    DeepSeekClientTest()
    {
        config.apiKey = u"sk-1"_s;
        config.baseURL = server.address();
    }

    DeepSeekClient client() { return DeepSeekClient(config, connections, limits); }
    Explanation explain() { return await(client().explain(u"ran \"词\""_s, u"He ran."_s)); }
    QCoro::AsyncGenerator<QString> stream(std::stop_token stop = {})
    {
        const QList<ChatMessage> messages{ChatMessage::system(u"s"_s), ChatMessage::user(u"问"_s)};
        return client().streamChat(messages, 0.7, std::move(stop));
    }
    QStringList streamed(Script script)
    {
        server.answer(std::move(script));
        return RunningStream(stream()).result();
    }
    /// The failure that a response brings to an exchange and to a stream alike.
    QString failureAfter(const Script &script)
    {
        server.answer(script);
        const QString text = failureOf([this] { explain(); });
        EXPECT_EQ(failureOf([&] { streamed(script); }), text);
        return text;
    }
    QJsonObject sentBody() const { return QJsonDocument::fromJson(server.requests().last().body).object(); }

    ScriptedServer server;
    ManualClock clock;
    ProviderConnections connections{clock};
    AppConfig config;
    DeepSeekClient::Limits limits;
};

TEST_F(DeepSeekClientTest, SendsExactlyWhatTheProtocolAsksFor)
{
    config.apiKey = u"\n sk-1 \t\r\n"_s;
    config.model = u" my-model "_s;
    config.baseURL = u"\t//"_s + server.address() + u"/v1/// "_s;
    server.answer(Script::response(200, explanationReply()));
    EXPECT_EQ(explain().meaningZh, u"跑"_s);
    const auto request = server.requests().first();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/v1/chat/completions");
    EXPECT_EQ(request.headers.value("authorization"), "Bearer sk-1");
    EXPECT_EQ(request.headers.value("content-type"), "application/json");
    EXPECT_EQ(request.headers.value("accept-language"), "zh-CN");
    const QJsonArray contract{message(u"system"_s, prompts::explain()),
        message(u"user"_s, u"Selection: ran \"词\"\nSurrounding text: He ran."_s)};
    EXPECT_EQ(sentBody(),
        (QJsonObject{{u"model"_s, u" my-model "_s}, {u"messages"_s, contract},
            {u"response_format"_s, QJsonObject{{u"type"_s, u"json_object"_s}}}, {u"temperature"_s, 0.2},
            {u"stream"_s, false}}));

    EXPECT_EQ(streamed(Script::response(200, event("好") + event(" 的 ") + "data: [DONE]\n\n")),
        (QStringList{u"好"_s, u" 的 "_s}));
    const QJsonArray conversation{message(u"system"_s, u"s"_s), message(u"user"_s, u"问"_s)};
    EXPECT_EQ(sentBody(),
        (QJsonObject{{u"model"_s, u" my-model "_s}, {u"messages"_s, conversation}, {u"temperature"_s, 0.7},
            {u"stream"_s, true}}));
}

TEST_F(DeepSeekClientTest, EachContractSendsItsOwnPromptAndReadsItsOwnReply)
{
    const auto expectSent = [this](const QString &system, const QString &user) {
        EXPECT_EQ(sentBody()[u"messages"].toArray(),
            (QJsonArray{message(u"system"_s, system), message(u"user"_s, user)}));
    };
    WordEntry word;
    word.headword = u"run"_s;
    server.answer(Script::response(200, replyWith(uR"({"headword":"canva","meaning_zh":"设计工具"})"_s)));
    server.answer(Script::response(200, replyWith(uR"({"translation_zh":"译"})"_s)));
    server.answer(Script::response(200, replyWith(uR"({"tip_zh":"联想：跑"})"_s)));
    EXPECT_EQ(await(client().lookup(u"canva"_s)).explanation.meaningZh, u"设计工具"_s);
    expectSent(prompts::lookup(), u"Query: canva"_s);
    EXPECT_EQ(await(client().translate(u"A text."_s)).translationZh, u"译"_s);
    expectSent(prompts::translate(), u"A text."_s);
    EXPECT_EQ(await(client().mnemonic(word, {}, {})), u"联想：跑"_s);
    expectSent(prompts::mnemonic(), u"要记的词：run（ ）"_s);
}

TEST_F(DeepSeekClientTest, SendsNothingWithoutAnAddressOrAKey)
{
    for (const QString &base : {server.address() + u"/\n"_s, u'\n' + server.address(),
             server.address(u"/a b"_s), u" / "_s, u"127.0.0.1"_s, u"http://"_s, u"http://%zz"_s}) {
        config.baseURL = base;
        EXPECT_EQ(failureAfter(Script()), badResponse) << base.toStdString();
    }
    config.baseURL = server.address();
    config.apiKey = u" \n\t\r\n "_s;
    EXPECT_EQ(failureAfter(Script()), u"还没有填 DeepSeek API key，请在设置里填写。"_s);
    config.apiKey = u"sk\r\nX-Evil: 1"_s;
    EXPECT_EQ(failureAfter(Script()), u"API key 不正确，请在设置里检查一下。"_s);
    config.apiKey = u"sk-1"_s;
    {
        const auto unread = stream();
    }
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(DeepSeekClientTest, AnUnpairedSurrogateSpoilsNothing)
{
    const auto request = client().makeRequest({ChatMessage::user(QString(QChar(0xD83D)) + u"a"_s)}, {});
    EXPECT_EQ(QJsonDocument::fromJson(request.body)[u"messages"][0][u"content"].toString(),
        u"\uFFFD"
        u"a"_s);
}

TEST_F(DeepSeekClientTest, EveryStatusHasItsFailure)
{
    const QString family = u"👨\u200D👩\u200D👧"_s;
    const struct {
        int status;
        QByteArray body;
        QString text;
    } cases[] = {
        {401, "{}", u"API key 不正确，请在设置里检查一下。"_s},
        {402, "{}", u"DeepSeek 账户余额不足，请先充值。"_s},
        {400, "bad", u"DeepSeek 返回错误 400：bad"_s},
        {429, " slow %1", u"DeepSeek 返回错误 429： slow %1"_s},
        {502, family.repeated(300).toUtf8(), u"DeepSeek 返回错误 502："_s + family.repeated(200)},
        {503, "busy \xFF", u"DeepSeek 返回错误 503："_s},
        {204, "", u"DeepSeek 返回错误 204："_s},
    };
    for (const auto &one : cases) {
        const QByteArrayList headers{"WWW-Authenticate: Basic realm=\"x\""};
        EXPECT_EQ(failureAfter(Script::response(one.status, one.body, headers)), one.text) << one.status;
    }
    EXPECT_EQ(server.requests().size(), 2 * std::ssize(cases)) << "nothing is tried again";
}

TEST_F(DeepSeekClientTest, AnErrorIsStreamedOnlyAsFarAsItIsShown)
{
    const Script endless =
        Script::chunked(500)
            .send(Script::chunk(QByteArray(101, 'y') + "\r\n" + QByteArray(101, 'y') + "\n"))
            .hold();
    EXPECT_EQ(failureOf([&] { streamed(endless); }), u"DeepSeek 返回错误 500："_s + QString(200, u'y'));
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }));
}

TEST_F(DeepSeekClientTest, AnErrorThatRepeatsTheKeyIsShownWithoutIt)
{
    const QByteArray key = config.apiKey.trimmed().toUtf8();
    const QByteArray body = QByteArray(199, 'y') + key + " in \"Bearer " + key + '"';
    EXPECT_EQ(
        failureAfter(Script::response(400, body)), u"DeepSeek 返回错误 400："_s + QString(199, u'y') + u'…');
}

TEST_F(DeepSeekClientTest, FollowsNoRedirect)
{
    ScriptedServer elsewhere;
    for (const int status : {301, 302, 303, 307, 308}) {
        const QByteArray location = elsewhere.address(u"/chat/completions"_s).toUtf8();
        EXPECT_EQ(failureAfter(Script::response(status, "moved", {"Location: " + location})),
            u"DeepSeek 返回错误 "_s + QString::number(status) + u"：moved"_s);
    }
    EXPECT_TRUE(elsewhere.requests().isEmpty());
}

TEST_F(DeepSeekClientTest, AReplyThatCannotBeReadIsABadResponse)
{
    for (const QByteArray &body :
        {QByteArray(), QByteArray(R"({"choices":[]})"), QByteArray(R"({"choices":[{"message":{}}]})"),
            explanationReply() + "x", replyWith(uR"({"headword":"run"})"_s)}) {
        server.answer(Script::response(200, body));
        EXPECT_EQ(failureOf([this] { explain(); }), badResponse) << body.toStdString();
    }
}

TEST_F(DeepSeekClientTest, ABrokenConnectionIsATransportErrorAndIsNotTriedAgain)
{
    limits.silence = 200ms;
    using Kind = TransportError::Kind;
    EXPECT_EQ(failureAfter(Script().hold()), textOf(Kind::timedOut));
    EXPECT_EQ(
        failureAfter(Script::chunked(200).send(Script::chunk(event("一"))).hold()), textOf(Kind::timedOut));
    EXPECT_EQ(failureAfter(Script().close()), textOf(Kind::lost));
    EXPECT_EQ(failureAfter(Script::chunked(200).close()), textOf(Kind::lost));
    EXPECT_EQ(failureAfter(Script::chunked(500).send(Script::chunk("busy")).close()), textOf(Kind::lost));
    EXPECT_EQ(server.requests().size(), 10);
    {
        const ScriptedServer gone;
        config.baseURL = gone.address();
    }
    EXPECT_EQ(failureAfter(Script()), textOf(Kind::refused));
}

TEST_F(DeepSeekClientTest, AReplyWithoutEndIsLeftAndCannotBeRead)
{
    const QByteArray blank(64 * 1024, ' '), comments = QByteArray(": still here\n").repeated(5000);
    EXPECT_EQ(failureAfter(Script::unbounded(200).repeat(blank)), badResponse);
    EXPECT_EQ(failureOf([&] { streamed(Script::unbounded(200).repeat(comments)); }), badResponse);
    EXPECT_EQ(failureOf([&] { streamed(Script::unbounded(200).repeat(event(blank))); }), badResponse);
    EXPECT_EQ(failureAfter(Script::unbounded(500).repeat(QByteArray("忙").repeated(5000))),
        u"DeepSeek 返回错误 500："_s + u"忙"_s.repeated(200));
    EXPECT_EQ(failureAfter(Script::unbounded(200, {"X: " + QByteArray(70'000, 'x')}).send("x").hold()),
        badResponse);
    EXPECT_TRUE(waitUntil([this] { return server.openConnections() == 0; }));
}

TEST_F(DeepSeekClientTest, AServerThatTricklesIsNotWaitedForWithoutEnd)
{
    limits.exchange = 200ms;
    limits.streamWithoutText = 200ms;
    EXPECT_EQ(
        failureAfter(Script::unbounded(200).repeat(":\n", 10ms)), textOf(TransportError::Kind::timedOut));
    EXPECT_EQ(failureAfter(Script().send("HTTP/1.1 200 OK\r\nX: ").repeat("x", 10ms)),
        textOf(TransportError::Kind::timedOut));
    EXPECT_TRUE(waitUntil([this] { return server.openConnections() == 0; }));
}

TEST_F(DeepSeekClientTest, AStreamMayTakeItsTimeWhileTextComes)
{
    limits.exchange = 1ms;
    limits.streamWithoutText = 1s;
    server.answer(Script::unbounded(200).repeat(event("字"), 150ms));
    std::stop_source source;
    RunningStream running(stream(source.get_token()));
    EXPECT_TRUE(waitUntil([&running] { return running.pieces().size() == 9; }));
    source.request_stop();
    EXPECT_THROW(running.result(), Cancelled);
}

TEST_F(DeepSeekClientTest, WhatACardCannotShowIsCutOff)
{
    const QString endless = u"𝄞"_s.repeated(50'000);
    const QString many = u"\"un-\","_s.repeated(1000) + u"\"x\""_s;
    server.answer(Script::response(200,
        replyWith(
            uR"({"headword":"run","meaning_zh":"跑","sentence":"%1","affixes":[%2],"inflections":{"past":"%1"}})"_s
                .arg(endless, many))));
    const Explanation cut = explain();
    EXPECT_EQ(cut.sentence, u"𝄞"_s.repeated(2000));
    EXPECT_EQ(cut.affixes->size(), 64);
    EXPECT_EQ(cut.inflections->value(u"past"_s).size(), 4000);

    const QString longest = u"译"_s.repeated(8000);
    const QString terms = uR"({"text":"%1","meaning_zh":"%1"})"_s.arg(endless);
    server.answer(Script::response(
        200, replyWith(uR"({"translation_zh":"%1","key_terms":[%2]})"_s.arg(longest, terms))));
    const Translation translation = await(client().translate(u"A text."_s));
    EXPECT_EQ(translation.translationZh, longest);
    EXPECT_EQ(translation.keyTerms->first().text.size(), 4000);

    server.answer(Script::response(200, replyWith(uR"({"headword":"a%1","meaning_zh":"b"})"_s.arg(endless))));
    EXPECT_EQ(await(client().lookup(u"a"_s)).explanation.headword, u"a"_s + u"𝄞"_s.repeated(1999));
}

TEST_F(DeepSeekClientTest, OnlyAStreamThatIsCutOffEndsAsIfComplete)
{
    const Script cutOff = Script::chunked(200).send(Script::chunk(explanationReply())).close();
    server.answer(cutOff);
    EXPECT_EQ(failureOf([this] { explain(); }), textOf(TransportError::Kind::lost));

    const QByteArray two = event("一") + event("二");
    const QStringList pieces{u"一"_s, u"二"_s};
    EXPECT_EQ(streamed(Script::chunked(200).send(Script::chunk(two)).send("40\r\ndata: {").close()), pieces);
    EXPECT_EQ(streamed(Script::unbounded(200).send(two.trimmed()).close()), pieces);
    EXPECT_EQ(streamed(Script::response(200, "")), QStringList());
}

// A server may give up a kept connection at any moment, and we learn of it only from the next request.
TEST_F(DeepSeekClientTest, NoExchangeUsesTheConnectionOfAnother)
{
    server.handle([this](const auto &) {
        const bool isKept = server.requests().size() > server.connections();
        return isKept ? Script().close() : Script::response(200, explanationReply());
    });
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(explain().headword, u"run"_s);
        EXPECT_EQ(server.connections(), i);
    }
    EXPECT_TRUE(waitUntil([this] { return server.openConnections() == 0; })) << "none is kept";
}

TEST_F(DeepSeekClientTest, APieceIsThereBeforeTheNextIsSent)
{
    server.answer(Script::chunked(200)
                      .send(Script::chunk(event("一")))
                      .hold()
                      .send(Script::chunk(event("二") + "data: [DONE]\n"))
                      .hold());
    RunningStream running(stream());
    ASSERT_TRUE(waitUntil([&running] { return running.pieces() == QStringList{u"一"_s}; }));
    server.release();
    EXPECT_EQ(running.result(), (QStringList{u"一"_s, u"二"_s}));
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }))
        << "the end of the answer is enough";
}

TEST_F(DeepSeekClientTest, StoppingClosesTheConnectionAtOnce)
{
    std::stop_source source;
    server.answer(Script().hold());
    Running<Explanation> exchange(client().explain(u"ran"_s, std::nullopt, source.get_token()));
    ASSERT_TRUE(waitUntil([this] { return server.isHolding(); }));
    server.answer(Script::chunked(200).send(Script::chunk(event("一"))).hold());
    RunningStream streaming(stream(source.get_token()));
    ASSERT_TRUE(waitUntil([&] { return !streaming.pieces().isEmpty(); }));
    source.request_stop();
    EXPECT_TRUE(exchange.isDone() && streaming.isDone());
    EXPECT_THROW(exchange.result(), Cancelled);
    EXPECT_THROW(streaming.result(), Cancelled);
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 2; }));

    EXPECT_THROW(await(client().explain(u"ran"_s, std::nullopt, source.get_token())), Cancelled);
    EXPECT_THROW(RunningStream(stream(source.get_token())).result(), Cancelled);
    EXPECT_EQ(server.requests().size(), 2) << "a flow that was stopped before sends nothing";
}

TEST_F(DeepSeekClientTest, DroppingAStreamClosesTheConnection)
{
    server.answer(Script::chunked(200).send(Script::chunk(event("一") + event("二"))).hold());
    EXPECT_EQ(RunningStream(stream(), 1).result(), QStringList{u"一"_s});
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }));
}

} // namespace
