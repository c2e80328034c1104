#include "coach/LocalTimes.h"

#include <QDateTime>

#include <algorithm>

namespace nimbrelle {

using namespace std::chrono;

LocalTime LocalTimes::at(Timestamp time)
{
    const Timestamp moment = std::clamp(time, distantPast, distantFuture);
    const local_time<microseconds> local{(moment + offsetAt(moment)).time_since_epoch()};
    const local_days day = floor<days>(local);
    return {.day = day, .hour = static_cast<int>(floor<hours>(local - day).count())};
}

// Clocks never change twice within a day, so equal offsets at both ends mean that there was no change.
LocalTimes::Offset LocalTimes::offsetAt(Timestamp time)
{
    const auto start = floor<days>(time);
    const qint64 day = start.time_since_epoch().count();
    auto known = m_offsets.constFind(day);
    if (known == m_offsets.constEnd()) {
        const Offset first = systemOffsetAt(start), last = systemOffsetAt(start + days{1} - seconds{1});
        known = m_offsets.insert(day, first == last ? std::optional(first) : std::nullopt);
    }
    return *known ? **known : systemOffsetAt(time);
}

LocalTimes::Offset LocalTimes::systemOffsetAt(Timestamp time) const
{
    const qint64 sinceEpoch = floor<milliseconds>(time.time_since_epoch()).count();
    const QDateTime moment = m_zone ? QDateTime::fromMSecsSinceEpoch(sinceEpoch, *m_zone)
                                    : QDateTime::fromMSecsSinceEpoch(sinceEpoch);
    return seconds{moment.offsetFromUtc()};
}

} // namespace nimbrelle
