#include "support/ScriptedServer.h"

#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr qint64 mostUnsent = 1024 * 1024; // bytes of a repeated piece

QByteArray headOf(int status, const QByteArrayList &headers)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " Scripted\r\n";
    for (const QByteArray &header : headers)
        head += header + "\r\n";
    return head + "\r\n";
}

ScriptedServer::Request requestOf(const QByteArray &head)
{
    QByteArrayList lines = head.split('\n');
    const QByteArrayList start = lines.takeFirst().trimmed().split(' ');
    ScriptedServer::Request request{start.value(0), start.value(1), {}, {}};
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    return request;
}

} // namespace

ScriptedServer::Script &ScriptedServer::Script::send(QByteArray bytes)
{
    m_steps.append(Step{.kind = Step::Kind::send, .bytes = std::move(bytes)});
    return *this;
}

ScriptedServer::Script &ScriptedServer::Script::repeat(QByteArray bytes, std::chrono::milliseconds pause)
{
    m_steps.append(Step{.kind = Step::Kind::repeat, .bytes = std::move(bytes), .pause = pause});
    return *this;
}

ScriptedServer::Script &ScriptedServer::Script::hold()
{
    m_steps.append(Step{.kind = Step::Kind::hold});
    return *this;
}

ScriptedServer::Script &ScriptedServer::Script::close()
{
    m_steps.append(Step{.kind = Step::Kind::close});
    return *this;
}

ScriptedServer::Script ScriptedServer::Script::response(
    int status, const QByteArray &body, const QByteArrayList &headers)
{
    const QByteArrayList all = headers + QByteArrayList{"Content-Length: " + QByteArray::number(body.size())};
    return Script().send(headOf(status, all) + body);
}

ScriptedServer::Script ScriptedServer::Script::chunked(int status, const QByteArrayList &headers)
{
    return Script().send(headOf(status, headers + QByteArrayList{"Transfer-Encoding: chunked"}));
}

QByteArray ScriptedServer::Script::chunk(const QByteArray &bytes)
{
    return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
}

ScriptedServer::Script ScriptedServer::Script::unbounded(int status, const QByteArrayList &headers)
{
    return Script().send(headOf(status, headers + QByteArrayList{"Connection: close"}));
}

ScriptedServer::ScriptedServer(std::unique_ptr<QTcpServer> listener) : m_listener(std::move(listener))
{
    QObject::connect(
        m_listener.get(), &QTcpServer::pendingConnectionAvailable, m_listener.get(), [this] { accept(); });
    if (!m_listener->listen(QHostAddress::LocalHost))
        qFatal("no loopback port to listen on");
}

ScriptedServer::~ScriptedServer()
{
    for (const auto &connection : m_connections)
        connection->socket->disconnect();
}

QString ScriptedServer::address(const QString &path) const
{
    return u"http://127.0.0.1:"_s + QString::number(port()) + path;
}

void ScriptedServer::release()
{
    const auto held = std::find_if(m_connections.begin(), m_connections.end(),
        [](const auto &connection) { return connection->holding; });
    if (held == m_connections.end()) {
        ++m_released;
        return;
    }
    (*held)->holding = false;
    step(**held);
}

void ScriptedServer::endConnections(Goodbye goodbye)
{
    for (const auto &connection : m_connections) {
        if (connection->socket->state() != QTcpSocket::ConnectedState)
            continue;
        connection->closing = true;
        if (goodbye == Goodbye::close) {
            connection->socket->disconnectFromHost();
            continue;
        }
        const linger atOnce{.l_onoff = 1, .l_linger = 0};
        const auto descriptor = static_cast<int>(connection->socket->socketDescriptor());
        ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        connection->socket->abort();
    }
}

bool ScriptedServer::isHolding() const
{
    return std::any_of(m_connections.begin(), m_connections.end(),
        [](const auto &connection) { return connection->holding; });
}

void ScriptedServer::accept()
{
    while (QTcpSocket *socket = m_listener->nextPendingConnection()) {
        auto connection = std::make_shared<Connection>();
        connection->socket = socket;
        m_connections.push_back(connection);
        ++m_openConnections;
        QObject::connect(
            socket, &QTcpSocket::readyRead, socket, [this, connection] { receive(*connection); });
        QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, connection] {
            --m_openConnections;
            m_closedByClient += connection->closing ? 0 : 1;
            connection->steps.clear();
            connection->holding = false;
        });
        receive(*connection);
    }
}

void ScriptedServer::receive(Connection &connection)
{
    const QByteArray bytes = connection.socket->isOpen() ? connection.socket->readAll() : QByteArray();
    m_bytesReceived += bytes.size();
    connection.received.append(bytes);
    while (connection.steps.isEmpty() && !connection.holding && takeRequest(connection))
        step(connection);
}

bool ScriptedServer::takeRequest(Connection &connection)
{
    const qsizetype headEnd = connection.received.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return false;
    Request request = requestOf(connection.received.first(headEnd));
    const qsizetype bodySize = request.headers.value("content-length").toLongLong();
    const qsizetype bodyStart = headEnd + 4;
    if (connection.received.size() < bodyStart + bodySize)
        return false;
    request.body = connection.received.sliced(bodyStart, bodySize);
    connection.received.remove(0, bodyStart + bodySize);
    m_requests.append(request);
    connection.steps = scriptFor(request).m_steps;
    return true;
}

// Each step is taken in its own turn of the event loop, so that writes reach the wire one by one.
void ScriptedServer::step(Connection &connection)
{
    if (connection.steps.isEmpty()) {
        receive(connection);
        return;
    }
    const Script::Step next = connection.steps.takeFirst();
    switch (next.kind) {
    case Script::Step::Kind::send:
        connection.socket->write(next.bytes);
        connection.socket->flush();
        break;
    case Script::Step::Kind::repeat:
        if (connection.socket->bytesToWrite() < mostUnsent)
            connection.socket->write(next.bytes);
        connection.steps.prepend(next);
        QTimer::singleShot(next.pause, connection.socket, [this, &connection] { step(connection); });
        return;
    case Script::Step::Kind::hold:
        if (m_released == 0) {
            connection.holding = true;
            return;
        }
        --m_released;
        break;
    case Script::Step::Kind::close:
        connection.closing = true;
        connection.socket->disconnectFromHost();
        return;
    }
    QTimer::singleShot(0, connection.socket, [this, &connection] { step(connection); });
}

ScriptedServer::Script ScriptedServer::scriptFor(const Request &request)
{
    if (!m_scripts.isEmpty())
        return m_scripts.takeFirst();
    return m_handler ? m_handler(request) : Script::response(404, "no script");
}

} // namespace nimbrelle
