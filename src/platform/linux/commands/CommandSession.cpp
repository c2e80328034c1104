#include "platform/linux/commands/CommandSession.h"

#include "frame/RecordCodec.h"
#include "platform/linux/commands/CommandReply.h"

#include <QLocalSocket>
#include <QPointer>
#include <QTextStream>

#include <sys/socket.h>
#include <unistd.h>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto lifeSignPeriod = 3s;

/// Sends what is printed to it.
class ReplyDevice final : public QIODevice {
public:
    explicit ReplyDevice(CommandSession *session) : m_session(session)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *bytes, qint64 count) override
    {
        if (m_session)
            m_session->send({.output = QString::fromUtf8(bytes, count), .exitCode = {}});
        return count;
    }

private:
    QPointer<CommandSession> m_session;
};

} // namespace

bool isOwnUser(const QLocalSocket &socket)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    const auto file = static_cast<int>(socket.socketDescriptor());
    return ::getsockopt(file, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
}

CommandSession::CommandSession(QLocalSocket *caller, const CommandRunner &run, QObject *parent)
    : QObject(parent), m_caller(*caller), m_run(run)
{
    caller->setParent(this);
    connect(caller, &QLocalSocket::readyRead, this, &CommandSession::read);
    connect(caller, &QLocalSocket::disconnected, this, &CommandSession::end);
    connect(&m_lifeSigns, &QTimer::timeout, this, [this] { send({}); });
    QMetaObject::invokeMethod(this, &CommandSession::greet, Qt::QueuedConnection);
}

// What a caller left who has gone already is read first: it would be lost with a greeting that can't be sent.
void CommandSession::greet()
{
    if (m_caller.state() == QLocalSocket::ConnectedState)
        m_caller.waitForReadyRead(0);
    read();
    if (!m_hasCommand)
        send({});
    if (m_caller.state() == QLocalSocket::UnconnectedState)
        end();
}

void CommandSession::send(const CommandReply &reply)
{
    if (m_caller.state() != QLocalSocket::ConnectedState)
        return;
    if (const auto line = encode(reply, TextForm::line))
        m_caller.write(*line + '\n');
    m_caller.flush(); // it tells what is done, whatever happens next
}

void CommandSession::read()
{
    if (m_hasCommand || !m_caller.canReadLine())
        return;
    m_hasCommand = true;
    const auto command = decode<GivenCommand>(m_caller.readLine().trimmed());
    if (command == reopening)
        emit reopened();
    else if (command)
        run(*command);
    else
        m_caller.abort();
}

// A command that its caller no longer waits for is done all the same.
QCoro::Task<> CommandSession::run(GivenCommand command)
{
    m_isRunning = true;
    m_lifeSigns.start(lifeSignPeriod);
    const QPointer<CommandSession> self(this); // gone when the program ends before the command does
    ReplyDevice device(this);
    QTextStream out(&device);
    const int code = co_await m_run(command, &out);
    out.flush();
    if (!self)
        co_return;
    send({.output = {}, .exitCode = code});
    m_isRunning = false;
    if (m_caller.state() == QLocalSocket::UnconnectedState)
        end();
    else
        m_caller.disconnectFromServer();
}

void CommandSession::end()
{
    if (!m_isRunning)
        deleteLater();
}

} // namespace nimbrelle
