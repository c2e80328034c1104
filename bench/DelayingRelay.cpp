#include "DelayingRelay.h"

#include <QTcpSocket>
#include <QTimer>
#include <queue>

#include <algorithm>
#include <memory>

namespace nimbrelle::bench {

namespace {

using std::chrono::milliseconds;
using SteadyTime = std::chrono::steady_clock::time_point;

/// Takes from one socket and gives to the other, in order; nothing leaves `from` before `open`.
void relay(QTcpSocket *from, QTcpSocket *to, SteadyTime open, milliseconds oneWay)
{
    const auto waiting = std::make_shared<std::queue<QByteArray>>();
    const auto take = [=] {
        waiting->push(from->readAll());
        const auto now = std::chrono::steady_clock::now();
        const auto wait = std::chrono::ceil<milliseconds>(std::max(now, open) - now) + oneWay;
        QTimer::singleShot(wait, Qt::PreciseTimer, to, [=] {
            to->write(waiting->front());
            to->flush();
            waiting->pop();
        });
    };
    QObject::connect(from, &QTcpSocket::readyRead, to, take);
    QObject::connect(from, &QTcpSocket::disconnected, to,
        [=] { QTimer::singleShot(oneWay, Qt::PreciseTimer, to, [to] { to->disconnectFromHost(); }); });
}

void serve(QTcpSocket *client, quint16 serverPort, milliseconds oneWay)
{
    auto *server = new QTcpSocket(client);
    for (QTcpSocket *socket : {client, server})
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    const SteadyTime opened = std::chrono::steady_clock::now();
    relay(client, server, opened + 2 * oneWay, oneWay);
    relay(server, client, opened, oneWay);
    QObject::connect(server, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    server->connectToHost(QHostAddress::LocalHost, serverPort);
}

} // namespace

DelayingRelay::DelayingRelay(quint16 serverPort, milliseconds oneWay) : m_listener(new QTcpServer)
{
    QObject::connect(m_listener, &QTcpServer::newConnection, m_listener, [this, serverPort, oneWay] {
        while (QTcpSocket *client = m_listener->nextPendingConnection())
            serve(client, serverPort, oneWay);
    });
    if (!m_listener->listen(QHostAddress::LocalHost))
        qFatal("no loopback port to listen on");
    m_port = m_listener->serverPort();
    m_listener->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_listener, &QObject::deleteLater);
    m_thread.start();
}

DelayingRelay::~DelayingRelay()
{
    m_thread.quit();
    m_thread.wait();
}

} // namespace nimbrelle::bench
