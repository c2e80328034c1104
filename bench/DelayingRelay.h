#pragma once

#include <QTcpServer>
#include <QThread>

#include <chrono>

namespace nimbrelle::bench {

/// A TCP relay on loopback that is as slow as a far server: what it takes from either side arrives at the
/// other `oneWay` later. A connection is opened on loopback at once, and so its first bytes wait for the
/// round trip that opening it would have taken. It has a thread of its own.
class DelayingRelay {
public:
    DelayingRelay(quint16 serverPort, std::chrono::milliseconds oneWay);
    Q_DISABLE_COPY_MOVE(DelayingRelay)
    ~DelayingRelay();

    quint16 port() const { return m_port; }

private:
    QThread m_thread;
    QTcpServer *m_listener; ///< lives in the thread and ends with it
    quint16 m_port = 0;
};

} // namespace nimbrelle::bench
