#include "platform/linux/x11/ClickCounter.h"

#include <cstdlib>

namespace nimbrelle {

int ClickCounter::press(QPoint at, quint32 time)
{
    int count = 1;
    if (m_last) {
        const std::chrono::milliseconds passed{time - m_last->time};
        const QPoint moved = at - m_last->at;
        if (passed <= m_interval && std::abs(moved.x()) <= m_distance && std::abs(moved.y()) <= m_distance)
            count = m_last->count + 1;
    }
    m_last = Press{at, time, count};
    return count;
}

} // namespace nimbrelle
