#pragma once

#include "platform/SingleInstance.h"

#include <QTimer>

class QLocalSocket;

namespace nimbrelle {

struct CommandReply;

/// The running program's side of one connection. Deletes itself when the caller has gone and nothing runs.
class CommandSession final : public QObject {
    Q_OBJECT

public:
    /// Takes the socket over.
    CommandSession(QLocalSocket *caller, const CommandRunner &run, QObject *parent);

    void send(const CommandReply &reply);

signals:
    void reopened();

private:
    void greet();
    void read();
    void end();
    QCoro::Task<> run(GivenCommand command);

    QLocalSocket &m_caller;
    const CommandRunner &m_run;
    QTimer m_lifeSigns;
    bool m_isRunning = false;
    bool m_hasCommand = false;
};

} // namespace nimbrelle
