#pragma once

#include "frame/Clock.h"
#include "frame/TaskSlot.h"

#include <QObject>

namespace nimbrelle {

/// Emits due() at a fixed interval. Main thread only; the clock must outlive it.
class Recheck : public QObject {
    Q_OBJECT

public:
    Recheck(Clock &clock, std::chrono::milliseconds every) : m_clock(clock), m_every(every) { }

    /// First after one interval; a second start counts it anew.
    void start() { run(m_task.renew()); }
    void stop() { m_task.cancel(); }

signals:
    void due();

private:
    QCoro::Task<> run(std::stop_token stop);

    Clock &m_clock;
    const std::chrono::milliseconds m_every;
    TaskSlot m_task;
};

} // namespace nimbrelle
