#pragma once

#include "frame/TaskSlot.h"
#include "frame/Timestamp.h"
#include "http/HttpConnection.h"

#include <QCoro/QCoroTask>
#include <QUrl>

#include <memory>

namespace nimbrelle {

class Clock;

/// What one exchange is sent through: a connection that carried nothing before.
using ProviderConnection = std::unique_ptr<HttpConnection>;

/// Gives each exchange with the AI provider a connection that nobody used before. One that is kept for the
/// next exchange may be closed by the server, or lost in a suspend, unnoticed until a paid request is on it.
/// So that a look-up needn't wait for the new one, prepare() begins it while the user is still at the
/// gesture.
class ProviderConnections {
public:
    explicit ProviderConnections(Clock &clock) : m_clock(clock) { }
    Q_DISABLE_COPY_MOVE(ProviderConnections)

    /// For one exchange with the server of `address`: the connection that was begun to it a moment ago, or a
    /// new one, which isn't begun.
    ProviderConnection take(const QUrl &address);

    /// An exchange with this server is likely to come: begins the connection, without a byte of the user's.
    /// Does nothing before an exchange with it has been begun in this run, nor for a while after a connection
    /// for which no exchange came. Fails in silence.
    void prepare(const QUrl &address);

private:
    struct Prepared {
        QUrl server;
        Timestamp at;
        ProviderConnection connection; ///< null when it has grown old or was used
        bool wasUsed = false;
    };

    bool mayPrepare(const QUrl &server) const;
    QCoro::Task<> dropWhenOld(std::stop_token stop);

    Clock &m_clock;
    QUrl m_lastServer; ///< of the last exchange; empty before the first
    Prepared m_prepared{.wasUsed = true};
    TaskSlot m_dropping;
};

} // namespace nimbrelle
