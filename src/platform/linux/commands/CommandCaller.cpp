#include "platform/linux/commands/CommandCaller.h"

#include "frame/RecordCodec.h"
#include "platform/linux/commands/CommandReply.h"

#include <QDeadlineTimer>
#include <QTextStream>

namespace nimbrelle {

bool CommandCaller::connectTo(const QString &socketPath)
{
    if (socketPath.isEmpty())
        return false;
    constexpr int milliseconds = 500;
    m_socket.connectToServer(socketPath);
    if (!m_socket.waitForConnected(milliseconds))
        return false;
    if (isOwnUser(m_socket))
        return true;
    m_socket.abort();
    return false;
}

CommandCaller::Greeting CommandCaller::waitForGreeting()
{
    if (nextReply(m_patience.forGreeting))
        return Greeting::alive;
    return m_socket.state() == QLocalSocket::ConnectedState ? Greeting::silent : Greeting::gone;
}

bool CommandCaller::send(const GivenCommand &command)
{
    const auto line = encode(command, TextForm::line);
    return line && m_socket.write(*line + '\n') >= 0
        && m_socket.waitForBytesWritten(static_cast<int>(m_patience.forGreeting.count()));
}

std::optional<int> CommandCaller::give(const GivenCommand &command, QTextStream &out)
{
    if (!send(command))
        return std::nullopt;
    while (const auto reply = nextReply(m_patience.forLifeSign)) {
        if (reply->output) {
            out << *reply->output;
            out.flush();
        }
        if (reply->exitCode)
            return static_cast<int>(*reply->exitCode);
    }
    return std::nullopt;
}

std::optional<CommandReply> CommandCaller::nextReply(std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    while (!m_socket.canReadLine()) {
        if (!m_socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return std::nullopt;
    }
    return decode<CommandReply>(m_socket.readLine().trimmed());
}

} // namespace nimbrelle
