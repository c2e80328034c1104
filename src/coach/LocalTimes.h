#pragma once

#include "frame/Timestamp.h"

#include <QHash>
#include <QTimeZone>

#include <optional>

namespace nimbrelle {

/// A moment on the learner's own calendar and clock.
struct LocalTime {
    std::chrono::local_days day;
    int hour = 0; ///< 0 to 23

    bool operator==(const LocalTime &) const = default;
};

/// Turns many moments into local time. A conversion by the system costs microseconds, so the offset from UTC
/// is asked for once for each day of UTC. It keeps the offsets of one time zone: make it afresh for each
/// task.
class LocalTimes {
public:
    using Offset = std::chrono::seconds;

    /// In the zone of the system.
    LocalTimes() = default;
    explicit LocalTimes(const QTimeZone &zone) : m_zone(zone) { }

    LocalTime at(Timestamp time);
    /// Of the zone from UTC.
    Offset offsetAt(Timestamp time);

private:
    Offset systemOffsetAt(Timestamp time) const;

    std::optional<QTimeZone> m_zone;
    /// By day of UTC since the epoch; absent where the offset changes within the day.
    QHash<qint64, std::optional<Offset>> m_offsets;
};

} // namespace nimbrelle
