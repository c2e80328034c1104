#pragma once

#include "ai/AIClient.h"
#include "ai/AIError.h"
#include "ai/ReplyLengths.h"
#include "frame/RecordCodec.h"
#include "http/HttpRequest.h"

#include <QJsonObject>

#include <chrono>

namespace nimbrelle {

class ProviderConnections;

/// Speaks the chat-completions protocol at "{baseURL}/chat/completions". A value: copies are cheap, and later
/// changes of the settings never reach it. The connections must outlive every flow.
class DeepSeekClient final : public AIClient {
public:
    struct Limits {
        std::chrono::milliseconds silence = std::chrono::seconds{60}; ///< of the connection
        std::chrono::milliseconds exchange = std::chrono::seconds{120}; ///< a whole one without a stream
        std::chrono::milliseconds streamWithoutText = std::chrono::seconds{60};
    };

    DeepSeekClient(AppConfig config, ProviderConnections &connections, Limits limits);
    DeepSeekClient(AppConfig config, ProviderConnections &connections)
        : DeepSeekClient(std::move(config), connections, Limits())
    {
    }

    /// `extra`: members of the body beside the model and the messages. Throws AIError when there is no key or
    /// the address is not valid.
    HttpRequest makeRequest(const QList<ChatMessage> &messages, const QJsonObject &extra) const;

    /// An exchange is likely to come: what can be done for its connection beforehand is begun.
    void prepare() const;

    /// One exchange whose reply is a JSON object in the form of `Reply`, read by the rules for AI replies.
    template <class Reply>
    QCoro::Task<Reply> chatJSON(QString system, QString user, std::stop_token stop = {}) const
    {
        return decoded<Reply>(*this, std::move(system), std::move(user), std::move(stop));
    }

    QCoro::Task<Explanation> explain(
        QString selection, std::optional<QString> context, std::stop_token stop = {}) const override;
    QCoro::Task<LookupResult> lookup(QString query, std::stop_token stop = {}) const override;
    QCoro::Task<Translation> translate(QString text, std::stop_token stop = {}) const override;
    QCoro::Task<QString> mnemonic(WordEntry word, QStringList knownWords, QStringList interests,
        std::stop_token stop = {}) const override;
    QCoro::AsyncGenerator<QString> streamChat(
        QList<ChatMessage> messages, double temperature, std::stop_token stop = {}) const override;

private:
    // The coroutines are static and take the client by value: its copy lives in their frame.
    template <class Reply>
    static QCoro::Task<Reply> decoded(
        DeepSeekClient client, QString system, QString user, std::stop_token stop)
    {
        const QByteArray content =
            co_await contentOf(std::move(client), std::move(system), std::move(user), std::move(stop));
        auto reply = decode<Reply>(content, KeyStyle::fromSnakeCase);
        if (!reply)
            throw AIError(AIError::Kind::badResponse);
        shorten(*reply);
        co_return *reply;
    }
    static QCoro::Task<QByteArray> contentOf(
        DeepSeekClient client, QString system, QString user, std::stop_token stop);
    static QCoro::Task<QString> tipOf(DeepSeekClient client, QString user, std::stop_token stop);
    static QCoro::AsyncGenerator<QString> piecesOf(
        DeepSeekClient client, QList<ChatMessage> messages, double temperature, std::stop_token stop);

    AppConfig m_config;
    ProviderConnections *m_connections;
    Limits m_limits;
};

} // namespace nimbrelle
