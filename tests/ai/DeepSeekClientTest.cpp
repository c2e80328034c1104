#include "ai/DeepSeekClient.h"

#include "ai/Prompts.h"
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

const QString badResponse = u"AI 返回的内容看不懂，再试一次吧。"_s;

QByteArray replyWith(const QString &content)
{
    const QJsonObject message{{u"role"_s, u"assistant"_s}, {u"content"_s, content}};
    return QJsonDocument(
        QJsonObject{{u"id"_s, u"1"_s},
            {u"choices"_s, QJsonArray{QJsonObject{{u"index"_s, 0}, {u"message"_s, message}}}}})
        .toJson();
}

QByteArray explanationReply()
{
    return replyWith(uR"({"headword":"run","meaning_zh":"跑","unknown":{}})"_s);
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

class DeepSeekClientTest : public testing::Test {
protected:
    DeepSeekClientTest()
    {
        config.apiKey = u"sk-1"_s;
        config.baseURL = server.address();
    }

    DeepSeekClient client(std::chrono::milliseconds patience = 60s)
    {
        return DeepSeekClient(config, network, patience);
    }
    QString explainFailure()
    {
        return failureOf([this] { await(client().explain(u"ran"_s, std::nullopt)); });
    }

    ScriptedServer server;
    QNetworkAccessManager network;
    AppConfig config;
};

TEST_F(DeepSeekClientTest, SendsExactlyWhatTheProtocolAsksFor)
{
    config.apiKey = u"\n sk-1 \t\r\n"_s;
    config.model = u" my-model "_s;
    server.answer(Script::response(200, explanationReply()));
    const Explanation explanation = await(client().explain(u"ran \"词\""_s, u"He ran."_s));
    EXPECT_EQ(explanation.headword, u"run"_s);
    EXPECT_EQ(explanation.meaningZh, u"跑"_s);

    ASSERT_EQ(server.requests().size(), 1);
    const auto &request = server.requests().first();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/chat/completions");
    EXPECT_EQ(request.headers.value("authorization"), "Bearer sk-1");
    EXPECT_EQ(request.headers.value("content-type"), "application/json");
    const QJsonObject expected{
        {u"model"_s, u" my-model "_s},
        {u"messages"_s,
            QJsonArray{QJsonObject{{u"role"_s, u"system"_s}, {u"content"_s, prompts::explain()}},
                QJsonObject{{u"role"_s, u"user"_s},
                    {u"content"_s, u"Selection: ran \"词\"\nSurrounding text: He ran."_s}}}},
        {u"response_format"_s, QJsonObject{{u"type"_s, u"json_object"_s}}},
        {u"temperature"_s, 0.2},
        {u"stream"_s, false},
    };
    EXPECT_EQ(QJsonDocument::fromJson(request.body).object(), expected) << request.body.toStdString();
}

TEST_F(DeepSeekClientTest, EachContractSendsItsOwnPromptAndReadsItsOwnReply)
{
    WordEntry word;
    word.headword = u"run"_s;
    server.answer(Script::response(200, replyWith(uR"({"headword":"canva","meaning_zh":"设计工具"})"_s)));
    server.answer(Script::response(200, replyWith(uR"({"translation_zh":"译"})"_s)));
    server.answer(Script::response(200, replyWith(uR"({"tip_zh":"联想：跑"})"_s)));
    EXPECT_EQ(await(client().lookup(u"canva"_s)).explanation.meaningZh, u"设计工具"_s);
    EXPECT_EQ(await(client().translate(u"A text."_s)).translationZh, u"译"_s);
    EXPECT_EQ(await(client().mnemonic(word, {}, {})), u"联想：跑"_s);

    const QStringList texts[] = {
        {prompts::lookup(), u"Query: canva"_s},
        {prompts::translate(), u"A text."_s},
        {prompts::mnemonic(), u"要记的词：run（ ）"_s},
    };
    for (qsizetype i = 0; i < 3; ++i) {
        const QJsonArray messages = QJsonDocument::fromJson(server.requests()[i].body)[u"messages"].toArray();
        EXPECT_EQ(messages[0][u"content"].toString(), texts[i][0]);
        EXPECT_EQ(messages[1][u"content"].toString(), texts[i][1]);
    }
}

TEST_F(DeepSeekClientTest, ForgivesBlanksAndSlashesRoundTheAddress)
{
    const struct {
        const char *base, *address;
    } cases[] = {
        {" https://example.org/ ", "https://example.org/chat/completions"},
        {"\thttps://example.org/v1///", "https://example.org/v1/chat/completions"},
        {"//https://example.org", "https://example.org/chat/completions"},
        {"http://[::1]:8080/a", "http://[::1]:8080/a/chat/completions"},
    };
    for (const auto &one : cases) {
        config.baseURL = QString::fromUtf8(one.base);
        EXPECT_EQ(client().makeRequest({}, {}).head.url().toString(), QString::fromUtf8(one.address));
    }
}

TEST_F(DeepSeekClientTest, SendsNothingWithoutAnAddressOrAKey)
{
    for (const QString &base : {server.address() + u'\n', server.address() + u"/\n"_s,
             u'\n' + server.address(), server.address(u"/a b"_s), u""_s, u" / "_s, u"127.0.0.1"_s,
             u"http://"_s, u"http://a b"_s, u"http://%zz"_s}) {
        config.baseURL = base;
        EXPECT_EQ(explainFailure(), badResponse) << base.toStdString();
    }
    config.baseURL = server.address();
    for (const QString &key : {u""_s, u" \n\t\r\n "_s}) {
        config.apiKey = key;
        EXPECT_EQ(explainFailure(), u"还没有填 DeepSeek API key，请在设置里填写。"_s);
    }
    config.apiKey = u"sk\r\nX-Evil: 1"_s;
    EXPECT_EQ(explainFailure(), u"API key 不正确，请在设置里检查一下。"_s);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(DeepSeekClientTest, AnUnpairedSurrogateSpoilsNothing)
{
    const auto request = client().makeRequest({{u"user"_s, QString(QChar(0xD83D)) + u"a"_s}}, {});
    EXPECT_EQ(QJsonDocument::fromJson(request.body)[u"messages"][0][u"content"].toString(),
        u"\uFFFD"
        "a"_s);
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
        {404, "", u"DeepSeek 返回错误 404："_s},
        {429, " slow %1\n", u"DeepSeek 返回错误 429： slow %1\n"_s},
        {500, QByteArray(300, 'x'), u"DeepSeek 返回错误 500："_s + QString(200, u'x')},
        {502, family.repeated(300).toUtf8(), u"DeepSeek 返回错误 502："_s + family.repeated(200)},
        {503, "busy \xFF", u"DeepSeek 返回错误 503："_s},
        {201, explanationReply().left(10),
            u"DeepSeek 返回错误 201："_s + QString::fromUtf8(explanationReply().left(10))},
        {204, "", u"DeepSeek 返回错误 204："_s},
    };
    for (const auto &one : cases) {
        server.answer(Script::response(one.status, one.body, {"WWW-Authenticate: Basic realm=\"x\""}));
        EXPECT_EQ(explainFailure(), one.text) << one.status;
    }
    EXPECT_EQ(server.requests().size(), std::ssize(cases)) << "nothing is tried again";
}

TEST_F(DeepSeekClientTest, FollowsNoRedirect)
{
    ScriptedServer elsewhere;
    for (const int status : {301, 302, 303, 307, 308}) {
        server.answer(Script::response(
            status, "moved", {"Location: " + elsewhere.address(u"/chat/completions"_s).toUtf8()}));
        EXPECT_EQ(explainFailure(), u"DeepSeek 返回错误 "_s + QString::number(status) + u"：moved"_s);
    }
    EXPECT_TRUE(elsewhere.requests().isEmpty());
}

TEST_F(DeepSeekClientTest, AReplyThatCannotBeReadIsABadResponse)
{
    const QByteArrayList bodies{"", "{}", "not json", R"({"choices":[]})", R"({"choices":[{}]})",
        R"({"choices":[{"message":{}}]})", R"({"choices":[{"message":{"content":null}}]})",
        R"({"choices":[{"message":{"content":1}}]})", explanationReply() + "x", replyWith(u""_s),
        replyWith(uR"({"headword":"run"})"_s),
        replyWith(u"```json\n{\"headword\":\"run\",\"meaning_zh\":\"跑\"}\n```"_s)};
    for (const QByteArray &body : bodies) {
        server.answer(Script::response(200, body));
        EXPECT_EQ(explainFailure(), badResponse) << body.toStdString();
    }
}

TEST_F(DeepSeekClientTest, ABrokenWayIsATransportErrorAndIsNotTriedAgain)
{
    const auto kindOf = [this](Script script) {
        server.answer(std::move(script));
        try {
            await(client(200ms).explain(u"ran"_s, std::nullopt));
        } catch (const TransportError &error) {
            EXPECT_FALSE(error.text().isEmpty());
            return error.kind();
        }
        ADD_FAILURE() << "no transport error";
        return TransportError::Kind::other;
    };
    using Kind = TransportError::Kind;
    EXPECT_EQ(kindOf(Script().hold()), Kind::timedOut);
    EXPECT_EQ(kindOf(Script::chunked(200).send("5\r\n{\"cho").hold()), Kind::timedOut);
    EXPECT_EQ(kindOf(Script::chunked(200).send(Script::chunk(explanationReply())).close()), Kind::lost);
    EXPECT_EQ(kindOf(Script().close()), Kind::lost);
    EXPECT_EQ(server.requests().size(), 4);

    {
        const ScriptedServer gone;
        config.baseURL = gone.address();
    }
    EXPECT_EQ(kindOf(Script()), Kind::refused);
}

TEST_F(DeepSeekClientTest, AConnectionClosedBetweenRequestsGoesUnnoticed)
{
    for (int i = 0; i < 3; ++i) {
        server.answer(Script::response(200, explanationReply()).close());
        EXPECT_EQ(await(client().explain(u"ran"_s, std::nullopt)).headword, u"run"_s);
        // The network layer learns of the end in a thread of its own.
        ASSERT_TRUE(waitUntil([this] { return server.openConnections() == 0; }));
    }
    EXPECT_EQ(server.requests().size(), 3);
}

TEST_F(DeepSeekClientTest, AStoppedExchangeClosesItsConnectionAtOnce)
{
    server.answer(Script().hold());
    std::stop_source source;
    Running<Explanation> running(client().explain(u"ran"_s, std::nullopt, source.get_token()));
    ASSERT_TRUE(waitUntil([this] { return server.isHolding(); }));
    source.request_stop();
    EXPECT_TRUE(running.isDone());
    EXPECT_THROW(running.result(), Cancelled);
    EXPECT_TRUE(waitUntil([this] { return server.closedByClient() == 1; }));

    EXPECT_THROW(await(client().explain(u"ran"_s, std::nullopt, source.get_token())), Cancelled);
    EXPECT_EQ(server.requests().size(), 1) << "a flow that was stopped before sends nothing";
}

} // namespace
