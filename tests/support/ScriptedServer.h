#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QMap>
#include <QTcpServer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>

class QTcpSocket;

namespace nimbrelle {

/// An HTTP/1.1 server on a free loopback port, inside the test's own event loop. It records what arrives and
/// answers byte for byte as it is told.
class ScriptedServer {
public:
    struct Request {
        QByteArray method;
        QByteArray target; ///< path and query
        QMap<QByteArray, QByteArray> headers; ///< names in lower case
        QByteArray body;
    };

    /// What is done about one request, step by step. At its end the connection stays open for the next one.
    class Script {
    public:
        /// One write, on the wire by itself.
        Script &send(QByteArray bytes);
        /// Sends `bytes` again and again, at least `pause` apart, until the client closes.
        Script &repeat(QByteArray bytes, std::chrono::milliseconds pause = {});
        /// Waits for ScriptedServer::release().
        Script &hold();
        /// Ends the connection after what was sent.
        Script &close();

        /// A whole response with its length.
        static Script response(int status, const QByteArray &body, const QByteArrayList &headers = {});
        /// The head of a response in chunks, and one chunk of it; the last chunk is empty.
        static Script chunked(int status, const QByteArrayList &headers = {});
        static QByteArray chunk(const QByteArray &bytes);
        /// The head of a response whose body ends with the connection.
        static Script unbounded(int status, const QByteArrayList &headers = {});

    private:
        friend class ScriptedServer;
        struct Step {
            enum class Kind { send, repeat, hold, close } kind;
            QByteArray bytes;
            std::chrono::milliseconds pause{};
        };
        QList<Step> m_steps;
    };

    /// Listens through `listener`, such as a TLS server with its configuration set.
    explicit ScriptedServer(std::unique_ptr<QTcpServer> listener = std::make_unique<QTcpServer>());
    ~ScriptedServer();

    quint16 port() const { return m_listener->serverPort(); }
    QString address(const QString &path = {}) const;

    /// Scripts are used up in order; without one, a request is answered by 404.
    void answer(Script script) { m_scripts.append(std::move(script)); }
    /// Asked for a script where none is left.
    void handle(std::function<Script(const Request &)> handler) { m_handler = std::move(handler); }
    /// Lets one script go on that stands at hold(), or the next that comes to one.
    void release();

    const QList<Request> &requests() const { return m_requests; }
    /// How many connections were ended by the other side.
    int closedByClient() const { return m_closedByClient; }
    /// How many connections there were so far, and how many are open now.
    int connections() const { return static_cast<int>(m_connections.size()); }
    int openConnections() const { return m_openConnections; }
    /// How many bytes came on all of them.
    qint64 bytesReceived() const { return m_bytesReceived; }
    /// Ends all connections, in order or, as a server that forgot them does, with a reset.
    enum class Goodbye { close, reset };
    void endConnections(Goodbye goodbye);
    /// Whether a script stands at hold() now.
    bool isHolding() const;

private:
    struct Connection {
        QTcpSocket *socket = nullptr;
        QByteArray received;
        QList<Script::Step> steps;
        bool holding = false;
        bool closing = false;
    };

    void accept();
    void receive(Connection &connection);
    bool takeRequest(Connection &connection);
    void step(Connection &connection);
    Script scriptFor(const Request &request);

    std::unique_ptr<QTcpServer> m_listener;
    std::vector<std::shared_ptr<Connection>> m_connections;
    QList<Script> m_scripts;
    std::function<Script(const Request &)> m_handler;
    QList<Request> m_requests;
    int m_released = 0;
    int m_closedByClient = 0;
    int m_openConnections = 0;
    qint64 m_bytesReceived = 0;
};

} // namespace nimbrelle
