#include "frame/LocalDateTime.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

QDateTime localDateTime(Timestamp time)
{
    using namespace std::chrono;
    return QDateTime::fromMSecsSinceEpoch(floor<milliseconds>(time.time_since_epoch()).count());
}

QString localTimeText(const QDateTime &time)
{
    return time.toString(u"yyyy 年 M 月 d 日 HH:mm"_s);
}

QString localTimeText(const QDateTime &time, const QDateTime &now)
{
    const bool isOfThisYear = time.date().year() == now.date().year();
    return isOfThisYear ? time.toString(u"M 月 d 日 HH:mm"_s) : localTimeText(time);
}

} // namespace nimbrelle
