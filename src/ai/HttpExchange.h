#pragma once

#include "ai/ProviderConnections.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <coroutine>
#include <memory>
#include <optional>
#include <stop_token>

class QNetworkRequest;

namespace nimbrelle {

class OneTimeBody;

/// One POST, sent once and never again, and its reply, awaited from a coroutine on the main thread. It lives
/// in the frame of that coroutine; when it goes, or when `stop` is requested, the connection is closed.
///
/// The body is taken off the network as it comes, however slowly it is read here. How much of it is wanted is
/// the caller's to count.
class HttpExchange {
public:
    /// What a connection lost in the middle of the body means.
    enum class CutOff { isFailure, isEnd };

    /// `limit`: how long the whole may take, from now or from the last restartLimit(); after it every wait
    /// throws TransportError as timed out.
    HttpExchange(ProviderConnection connection, const QNetworkRequest &request, const QByteArray &body,
        std::chrono::milliseconds limit, std::stop_token stop);
    ~HttpExchange();
    Q_DISABLE_COPY_MOVE(HttpExchange)

    void restartLimit() { m_limit.start(); }

    /// `co_await exchange.answered()`: waits until the status is known. Throws Cancelled, TransportError, or
    /// AIError for headers of a size that no provider sends.
    auto answered() { return Wait<&HttpExchange::checkAnswered>{*this}; }
    /// 0 for a reply that has none.
    int status() const;

    /// `co_await exchange.more()`: the next bytes of the body; empty at its end. Throws as answered() does.
    auto more(CutOff cutOff)
    {
        m_cutOff = cutOff;
        return Wait<&HttpExchange::takeBytes>{*this};
    }

private:
    template <auto result> struct Wait {
        HttpExchange &exchange;

        bool await_ready() const { return exchange.isReady(); }
        void await_suspend(std::coroutine_handle<> waiting) { exchange.m_waiting = waiting; }
        auto await_resume() { return (exchange.*result)(); }
    };
    struct Abort {
        HttpExchange *exchange;
        void operator()() const { exchange->m_reply->abort(); }
    };

    bool isReady() const; ///< whether a wait may end
    void collect();
    void resume();
    void checkAnswered();
    QByteArray takeBytes();
    void throwUnlessEnded() const;

    const ProviderConnection m_connection;
    std::stop_token m_stop;
    std::coroutine_handle<> m_waiting;
    QByteArray m_unread;
    CutOff m_cutOff = CutOff::isFailure;
    bool m_hasBody = false;
    OneTimeBody *m_body; ///< the reply's child
    QNetworkReply *m_reply;
    QObject m_context; ///< ends the connections with us
    QTimer m_limit;
    std::optional<std::stop_callback<Abort>> m_onStop; ///< last, for it may run while it is made
};

} // namespace nimbrelle
