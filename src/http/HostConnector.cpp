#include "http/HostConnector.h"

#include <algorithm>

namespace nimbrelle {

namespace {

// The order is the system's, which puts the family first that it thinks better.
QList<QHostAddress> alternatingFamilies(const QList<QHostAddress> &addresses)
{
    if (addresses.isEmpty())
        return {};
    QList<QHostAddress> preferred, others, result;
    for (const QHostAddress &address : addresses)
        (address.protocol() == addresses.first().protocol() ? preferred : others).append(address);
    for (qsizetype i = 0; i < std::max(preferred.size(), others.size()); ++i)
        result += preferred.mid(i, 1) + others.mid(i, 1);
    return result;
}

} // namespace

HostConnector::HostConnector(MakeSocket makeSocket) : m_makeSocket(std::move(makeSocket))
{
    m_next.setSingleShot(true);
    m_next.setInterval(headStart);
    connect(&m_next, &QTimer::timeout, this, &HostConnector::tryNext);
}

HostConnector::~HostConnector()
{
    if (m_lookup)
        QHostInfo::abortHostLookup(*m_lookup);
}

void HostConnector::connectTo(const QString &host, quint16 port)
{
    const QHostAddress address(host);
    if (!address.isNull())
        return connectTo({address}, port);
    m_lookup = QHostInfo::lookupHost(host, this, [this, port](const QHostInfo &found) {
        m_lookup.reset();
        takeAddresses(found, port);
    });
}

void HostConnector::takeAddresses(const QHostInfo &found, quint16 port)
{
    if (!found.addresses().isEmpty())
        connectTo(alternatingFamilies(found.addresses()), port);
    else
        emit failed(TransportError(TransportError::Kind::hostNotFound, found.errorString()));
}

void HostConnector::connectTo(const QList<QHostAddress> &addresses, quint16 port)
{
    m_untried = addresses;
    m_port = port;
    tryNext();
}

void HostConnector::connectThrough(const QNetworkProxy &proxy, const QString &host, quint16 port)
{
    QTcpSocket &socket = addAttempt();
    socket.setProxy(proxy);
    socket.connectToHost(host, port);
}

// A socket is only looked at from the event loop, so that it may be destroyed then.
QTcpSocket &HostConnector::addAttempt()
{
    QTcpSocket &socket = *m_attempts.emplace_back(m_makeSocket());
    connect(&socket, &QTcpSocket::connected, this, &HostConnector::judge, Qt::QueuedConnection);
    connect(&socket, &QTcpSocket::errorOccurred, this, &HostConnector::judge, Qt::QueuedConnection);
    return socket;
}

void HostConnector::tryNext()
{
    if (m_untried.isEmpty())
        return;
    QTcpSocket &socket = addAttempt();
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.connectToHost(m_untried.takeFirst(), m_port);
    m_next.start();
}

void HostConnector::judge()
{
    if (m_winner || m_attempts.empty())
        return;
    const auto winner = std::find_if(m_attempts.begin(), m_attempts.end(),
        [](const auto &socket) { return socket->state() == QTcpSocket::ConnectedState; });
    if (winner != m_attempts.end()) {
        m_winner = std::move(*winner);
        m_winner->disconnect(this);
        m_attempts.clear();
        m_next.stop();
        emit connected();
        return;
    }
    if (dropFailed())
        tryNext();
    if (m_attempts.empty() && m_failure)
        emit failed(*m_failure);
}

bool HostConnector::dropFailed()
{
    const std::size_t failed = std::erase_if(m_attempts, [this](const auto &socket) {
        if (socket->state() != QTcpSocket::UnconnectedState)
            return false;
        if (!m_failure || m_failure->kind() == TransportError::Kind::noNetwork)
            m_failure = TransportError::ofSocket(socket->error(), socket->errorString());
        return true;
    });
    return failed > 0;
}

} // namespace nimbrelle
