#pragma once

#include "platform/SingleInstance.h"

#include <QLocalSocket>

namespace nimbrelle {

struct CommandReply;

/// How long a process waits that may not work on the data directory itself.
struct CommandPatience {
    std::chrono::milliseconds forDirectory; ///< held by a command, or by a program that just starts or ends
    std::chrono::milliseconds forGreeting; ///< by the running program
    std::chrono::milliseconds forLifeSign; ///< while it does the command
};

/// The other side: gives a command to the running program. Blocks, for this process has nothing else to do.
class CommandCaller {
public:
    explicit CommandCaller(const CommandPatience &patience) : m_patience(patience) { }

    /// Whether anyone of this user listens there.
    bool connectTo(const QString &socketPath);

    enum class Greeting { alive, silent, gone };
    Greeting waitForGreeting();

    /// False when it could not be sent.
    bool send(const GivenCommand &command);

    /// The exit code; absent when the program fell silent or ended before that.
    std::optional<int> give(const GivenCommand &command, QTextStream &out);

private:
    std::optional<CommandReply> nextReply(std::chrono::milliseconds patience);

    const CommandPatience &m_patience;
    QLocalSocket m_socket;
};

} // namespace nimbrelle
