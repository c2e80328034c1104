#include "ai/DeepSeekClient.h"

#include "ai/ChatAddress.h"
#include "ai/HttpExchange.h"
#include "ai/Prompts.h"
#include "ai/ProviderConnections.h"
#include "ai/StreamReader.h"
#include "frame/Text.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int statusOk = 200;
// More than any model says, so what goes on beyond is no answer.
constexpr qsizetype largestReply = 1024 * 1024;
constexpr qsizetype largestAnswer = 256 * 1024; // of a stream, as UTF-8

QByteArray keyOf(const AppConfig &config)
{
    const QString key = trimmedSpace(config.apiKey);
    if (key.isEmpty())
        throw AIError(AIError::Kind::noKey);
    // A line break inside would begin a header of its own.
    if (std::any_of(key.begin(), key.end(), [](QChar c) { return c.category() == QChar::Other_Control; }))
        throw AIError(AIError::Kind::unauthorized);
    return key.toUtf8();
}

QUrl addressOf(const AppConfig &config)
{
    const std::optional<QUrl> address = chatAddress(config.baseURL);
    if (!address)
        throw AIError(AIError::Kind::badResponse);
    return *address;
}

QByteArray bodyOf(const QString &model, const QList<ChatMessage> &messages, const QJsonObject &extra)
{
    QJsonArray list;
    for (const ChatMessage &message : messages)
        list.append(QJsonObject{
            {u"role"_s, message.role},
            {u"content"_s, wellFormed(message.content)},
        });
    QJsonObject body{{u"model"_s, wellFormed(model)}, {u"messages"_s, list}};
    for (auto it = extra.begin(); it != extra.end(); ++it)
        body.insert(it.key(), it.value());
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

QByteArray contentIn(const QByteArray &reply)
{
    const auto response = decode<ChatResponse>(reply);
    if (!response || response->choices.isEmpty() || !response->choices.first().message.content)
        throw AIError(AIError::Kind::badResponse);
    return response->choices.first().message.content->toUtf8();
}

} // namespace

DeepSeekClient::DeepSeekClient(AppConfig config, ProviderConnections &connections, Limits limits)
    : m_config(std::move(config)), m_connections(&connections), m_limits(limits)
{
}

HttpRequest DeepSeekClient::makeRequest(const QList<ChatMessage> &messages, const QJsonObject &extra) const
{
    const QByteArray key = keyOf(m_config);
    return {.method = "POST",
        .url = addressOf(m_config),
        .headers = {{"Content-Type", "application/json"}, {"User-Agent", "Nimbrelle"},
            {"Accept-Language", "zh-CN"}, {"Authorization", "Bearer " + key}},
        .body = bodyOf(m_config.model, messages, extra)};
}

void DeepSeekClient::prepare() const
{
    try {
        keyOf(m_config);
        m_connections->prepare(addressOf(m_config));
    } catch (const AIError &) { // the exchange will tell
    }
}

QCoro::Task<Explanation> DeepSeekClient::explain(
    QString selection, std::optional<QString> context, std::stop_token stop) const
{
    return chatJSON<Explanation>(prompts::explain(), explainMessage(selection, context), std::move(stop));
}

QCoro::Task<LookupResult> DeepSeekClient::lookup(QString query, std::stop_token stop) const
{
    return chatJSON<LookupResult>(prompts::lookup(), lookupMessage(query), std::move(stop));
}

QCoro::Task<Translation> DeepSeekClient::translate(QString text, std::stop_token stop) const
{
    return chatJSON<Translation>(prompts::translate(), translateMessage(text), std::move(stop));
}

QCoro::Task<QString> DeepSeekClient::mnemonic(
    WordEntry word, QStringList knownWords, QStringList interests, std::stop_token stop) const
{
    return tipOf(*this, mnemonicMessage(word, knownWords, interests), std::move(stop));
}

QCoro::AsyncGenerator<QString> DeepSeekClient::streamChat(
    QList<ChatMessage> messages, double temperature, std::stop_token stop) const
{
    return piecesOf(*this, std::move(messages), temperature, std::move(stop));
}

QCoro::Task<QString> DeepSeekClient::tipOf(DeepSeekClient client, QString user, std::stop_token stop)
{
    const MnemonicTip tip = co_await client.chatJSON<MnemonicTip>(prompts::mnemonic(), user, stop);
    co_return tip.tipZh;
}

QCoro::Task<QByteArray> DeepSeekClient::contentOf(
    DeepSeekClient client, QString system, QString user, std::stop_token stop)
{
    const QList<ChatMessage> messages{ChatMessage::system(system), ChatMessage::user(user)};
    const QJsonObject extra{
        {u"response_format"_s, QJsonObject{{u"type"_s, u"json_object"_s}}},
        {u"temperature"_s, 0.2},
        {u"stream"_s, false},
    };
    const HttpRequest request = client.makeRequest(messages, extra);
    if (stop.stop_requested())
        throw Cancelled();

    HttpExchange exchange(client.m_connections->take(request.url), request,
        {.silence = client.m_limits.silence, .whole = client.m_limits.exchange}, std::move(stop));
    co_await exchange.answered();
    const bool isAnswer = exchange.status() == statusOk;
    QByteArray reply;
    bool atEnd = false;
    while (!atEnd && reply.size() <= (isAnswer ? largestReply : largestErrorBody)) {
        const QByteArray bytes = co_await exchange.more(HttpExchange::CutOff::isFailure);
        atEnd = bytes.isEmpty();
        reply.append(bytes);
    }
    if (!isAnswer)
        throw AIError::ofStatus(exchange.status(), atEnd ? textFromUtf8(reply) : textFromCutUtf8(reply),
            trimmedSpace(client.m_config.apiKey));
    if (!atEnd)
        throw AIError(AIError::Kind::badResponse);
    co_return contentIn(reply);
}

QCoro::AsyncGenerator<QString> DeepSeekClient::piecesOf(
    DeepSeekClient client, QList<ChatMessage> messages, double temperature, std::stop_token stop)
{
    const QJsonObject extra{{u"stream"_s, true}, {u"temperature"_s, temperature}};
    const HttpRequest request = client.makeRequest(messages, extra);
    if (stop.stop_requested())
        throw Cancelled();

    HttpExchange exchange(client.m_connections->take(request.url), request,
        {.silence = client.m_limits.silence, .whole = client.m_limits.streamWithoutText}, stop);
    co_await exchange.answered();
    for (ErrorBodyReader body; exchange.status() != statusOk;) {
        const QByteArray bytes = co_await exchange.more(HttpExchange::CutOff::isFailure);
        if (body.completesWith(bytes))
            throw AIError::ofStatus(exchange.status(), body.text(), trimmedSpace(client.m_config.apiKey));
    }

    StreamReader reader;
    qsizetype withoutText = 0;
    qsizetype answered = 0;
    for (bool atEnd = false; !atEnd && !reader.isDone();) {
        const QByteArray bytes = co_await exchange.more(HttpExchange::CutOff::isEnd);
        atEnd = bytes.isEmpty();
        QStringList pieces = atEnd ? reader.finish() : reader.read(bytes);
        withoutText = pieces.isEmpty() ? withoutText + bytes.size() : 0;
        if (withoutText > largestReply)
            throw AIError(AIError::Kind::badResponse);
        if (!pieces.isEmpty())
            exchange.restartLimit();
        for (QString &piece : pieces) {
            answered += piece.toUtf8().size();
            if (answered > largestAnswer)
                throw AIError(AIError::Kind::badResponse);
            co_yield piece;
            if (stop.stop_requested())
                throw Cancelled();
        }
    }
}

} // namespace nimbrelle
