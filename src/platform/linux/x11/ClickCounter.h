#pragma once

#include <QPoint>

#include <chrono>
#include <optional>

namespace nimbrelle {

/// Counts presses of one button in quick succession at one place: 1, 2, 3 and on.
class ClickCounter {
public:
    /// A press counts on when it comes within `interval` of the one before, and no farther off than
    /// `distance` pixels to either side.
    ClickCounter(std::chrono::milliseconds interval, int distance)
        : m_interval(interval), m_distance(distance)
    {
    }

    /// `time` is the server's, in milliseconds, and wraps round after 49 days.
    int press(QPoint at, quint32 time);

    /// The next press is a first one.
    void reset() { m_last.reset(); }

private:
    struct Press {
        QPoint at;
        quint32 time;
        int count;
    };

    std::chrono::milliseconds m_interval;
    int m_distance;
    std::optional<Press> m_last;
};

} // namespace nimbrelle
