#pragma once

#include "frame/TaskSlot.h"
#include "frame/Timestamp.h"

#include <QCoro/QCoroTask>
#include <QNetworkAccessManager>
#include <QScopedPointer>
#include <QUrl>

#include <memory>

namespace nimbrelle {

class Clock;

/// What one exchange is sent through: a network manager of its own, and so a connection that carried nothing
/// before. It goes from the event loop, since it is let go in the middle of its signals.
using ProviderConnection = std::unique_ptr<QNetworkAccessManager, QScopedPointerDeleteLater>;

/// Gives each exchange with the AI provider a connection that nobody used before. One that is kept for the
/// next exchange may be closed by the server, or lost in a suspend, unnoticed until a paid request is on it.
/// So that a look-up needn't wait for the new one, prepare() begins it while the user is still at the
/// gesture.
///
/// Must outlive every exchange.
class ProviderConnections {
public:
    explicit ProviderConnections(Clock &clock) : m_clock(clock) { }
    Q_DISABLE_COPY_MOVE(ProviderConnections)

    /// For one exchange with the server of `address`: the connection that was begun to it a moment ago, or a
    /// new one.
    ProviderConnection take(const QUrl &address);

    /// An exchange with this server is likely to come: begins the connection, without a byte of the user's.
    /// Does nothing before an exchange with it has been begun in this run, nor for a while after a connection
    /// for which no exchange came. Fails in silence.
    void prepare(const QUrl &address);

private:
    struct Prepared {
        QUrl server;
        Timestamp at;
        ProviderConnection connection; ///< null when it failed, has grown old or was used
        bool wasUsed = false;
    };

    ProviderConnection newConnection();
    bool mayPrepare(const QUrl &server) const;
    void connectTo(const QUrl &server);
    QCoro::Task<> dropWhenOld(std::stop_token stop);

    Clock &m_clock;
    QObject m_managers; ///< parent of all: what still waits for its deletion at the end goes with us
    QUrl m_lastServer; ///< of the last exchange; empty before the first
    Prepared m_prepared{.wasUsed = true};
    TaskSlot m_dropping;
};

} // namespace nimbrelle
