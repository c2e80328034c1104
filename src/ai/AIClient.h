#pragma once

#include "ai/ChatRecords.h"
#include "ai/Contracts.h"
#include "frame/AppConfig.h"
#include "notebook/WordEntry.h"

#include <QCoro/QCoroAsyncGenerator>
#include <QCoro/QCoroTask>

#include <functional>
#include <memory>
#include <stop_token>

namespace nimbrelle {

/// The AI, as the flows see it. A client is made afresh for each task from the settings of that moment; what
/// it returns stays good when the client is gone. All on the main thread.
///
/// Each operation fails by throwing AIError, TransportError or, once `stop` is requested, Cancelled: a flow
/// that waits is then resumed inside the very request to stop. There are no retries.
class AIClient {
public:
    virtual ~AIClient() = default;

    /// `selection` as met in the text round it, if that is known.
    virtual QCoro::Task<Explanation> explain(
        QString selection, std::optional<QString> context, std::stop_token stop = {}) const = 0;
    virtual QCoro::Task<LookupResult> lookup(QString query, std::stop_token stop = {}) const = 0;
    virtual QCoro::Task<Translation> translate(QString text, std::stop_token stop = {}) const = 0;
    /// A memory aid of up to three lines.
    virtual QCoro::Task<QString> mnemonic(
        WordEntry word, QStringList knownWords, QStringList interests, std::stop_token stop = {}) const = 0;

    /// The answer to a conversation, piece by piece; nothing is sent before the first piece is awaited. An
    /// answer that is cut off ends as if it were complete. Letting go of the stream closes its connection.
    virtual QCoro::AsyncGenerator<QString> streamChat(
        QList<ChatMessage> messages, double temperature, std::stop_token stop = {}) const = 0;
};

using AIClientFactory = std::function<std::unique_ptr<AIClient>(const AppConfig &)>;

} // namespace nimbrelle
