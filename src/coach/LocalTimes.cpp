#include "coach/LocalTimes.h"

#include <QDateTime>

#include <algorithm>

namespace nimbrelle {

namespace {

using namespace std::chrono;

seconds systemOffsetAt(Timestamp time)
{
    const qint64 sinceEpoch = floor<milliseconds>(time.time_since_epoch()).count();
    return seconds{QDateTime::fromMSecsSinceEpoch(sinceEpoch, Qt::LocalTime).offsetFromUtc()};
}

} // namespace

LocalTime LocalTimes::at(Timestamp time)
{
    const Timestamp moment = std::clamp(time, distantPast, distantFuture);
    const local_time<microseconds> local{(moment + offsetAt(moment)).time_since_epoch()};
    const local_days day = floor<days>(local);
    return {day, static_cast<int>(floor<hours>(local - day).count())};
}

LocalTimes::Offset LocalTimes::offsetAt(Timestamp time)
{
    const auto start = floor<hours>(time);
    const qint64 hour = start.time_since_epoch().count();
    auto known = m_offsets.constFind(hour);
    if (known == m_offsets.constEnd()) {
        const Offset first = systemOffsetAt(start), last = systemOffsetAt(start + hours{1} - seconds{1});
        known = m_offsets.insert(hour, first == last ? std::optional(first) : std::nullopt);
    }
    return *known ? **known : systemOffsetAt(time);
}

} // namespace nimbrelle
