#pragma once

#include "http/TransportError.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace nimbrelle {

/// Connects one socket to a host. Its addresses are tried in turn, the two families alternating; each is
/// given a moment before the next is tried beside it, and the first that connects wins. So a network that
/// carries only one of the families costs no more than that moment.
class HostConnector final : public QObject {
    Q_OBJECT

public:
    using MakeSocket = std::function<std::unique_ptr<QTcpSocket>()>;
    static constexpr std::chrono::milliseconds headStart{250};

    explicit HostConnector(MakeSocket makeSocket);
    ~HostConnector() override;

    /// Each of these is called once; connected() or failed() may come before it returns.
    void connectTo(const QString &host, quint16 port);
    void connectTo(const QList<QHostAddress> &addresses, quint16 port);
    /// The proxy finds the host.
    void connectThrough(const QNetworkProxy &proxy, const QString &host, quint16 port);

    std::unique_ptr<QTcpSocket> takeSocket() { return std::move(m_winner); }

signals:
    void connected();
    void failed(const nimbrelle::TransportError &failure);

private:
    void takeAddresses(const QHostInfo &found, quint16 port);
    QTcpSocket &addAttempt();
    void tryNext();
    void judge();
    bool dropFailed();

    const MakeSocket m_makeSocket;
    QList<QHostAddress> m_untried;
    quint16 m_port = 0;
    std::vector<std::unique_ptr<QTcpSocket>> m_attempts;
    std::unique_ptr<QTcpSocket> m_winner;
    std::optional<TransportError> m_failure; ///< the one that tells most
    std::optional<int> m_lookup;
    QTimer m_next;
};

} // namespace nimbrelle
