#pragma once

#include "ai/ProviderConnections.h"

#include <QByteArray>
#include <QTimer>

#include <chrono>
#include <coroutine>
#include <optional>
#include <stop_token>

namespace nimbrelle {

/// One request, sent once and never again, and its reply, awaited from a coroutine on the main thread. It
/// lives in the frame of that coroutine; when it goes, or when `stop` is requested, the connection is closed.
///
/// The body is taken off the network as it comes, however slowly it is read here. How much of it is wanted is
/// the caller's to count.
class HttpExchange {
public:
    /// What a connection lost in the middle of the body means.
    enum class CutOff { isFailure, isEnd };

    struct Limits {
        std::chrono::milliseconds silence; ///< of the connection
        /// How long the whole may take, from now or from the last restartLimit().
        std::chrono::milliseconds whole;
    };

    /// After a limit every wait throws TransportError as timed out.
    HttpExchange(
        ProviderConnection connection, const HttpRequest &request, Limits limits, std::stop_token stop);
    ~HttpExchange();
    Q_DISABLE_COPY_MOVE(HttpExchange)

    void restartLimit() { m_limit.start(); }

    /// `co_await exchange.answered()`: waits until the status is known. Throws Cancelled, TransportError, or
    /// AIError for headers of a size that no provider sends.
    auto answered() { return Wait<&HttpExchange::checkAnswered>{*this}; }
    /// 0 for a reply that has none.
    int status() const { return m_connection->status(); }

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
        HttpConnection *connection;
        void operator()() const { connection->abort(); }
    };

    bool isReady() const; ///< whether a wait may end
    void collect();
    void checkAnswered();
    QByteArray takeBytes();
    void throwUnlessEnded() const;

    const ProviderConnection m_connection;
    std::stop_token m_stop;
    std::coroutine_handle<> m_waiting;
    QByteArray m_unread;
    CutOff m_cutOff = CutOff::isFailure;
    bool m_hasBody = false;
    QTimer m_limit;
    std::optional<std::stop_callback<Abort>> m_onStop; ///< last, for it may run while it is made
};

} // namespace nimbrelle
