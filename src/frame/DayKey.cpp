#include "frame/DayKey.h"

#include <QDateTime>

#include <algorithm>

namespace nimbrelle::DayKey {

using namespace Qt::StringLiterals;

QString string(Timestamp date)
{
    using namespace std::chrono;
    const auto time = std::clamp(date, distantPast, distantFuture);
    const qint64 sinceEpoch = floor<milliseconds>(time.time_since_epoch()).count();
    const QDate local = QDateTime::fromMSecsSinceEpoch(sinceEpoch).date();

    QString key = u"0000-00-00"_s;
    const auto put = [&key](qsizetype at, int width, int value) {
        for (qsizetype i = at + width - 1; i >= at; --i, value /= 10)
            key[i] = QChar(u'0' + value % 10);
    };
    put(0, 4, local.year());
    put(5, 2, local.month());
    put(8, 2, local.day());
    return key;
}

std::optional<Timestamp> date(QStringView key)
{
    const auto isDigit = [&key](qsizetype i) { return key[i] >= u'0' && key[i] <= u'9'; };
    const auto number = [&key](qsizetype at, qsizetype width) { return key.mid(at, width).toInt(); };
    if (key.size() != 10 || key[4] != u'-' || key[7] != u'-')
        return std::nullopt;
    for (const qsizetype i : {0, 1, 2, 3, 5, 6, 8, 9}) {
        if (!isDigit(i))
            return std::nullopt;
    }
    const QDate day{number(0, 4), number(5, 2), number(8, 2)};
    if (!day.isValid())
        return std::nullopt;
    return Timestamp{std::chrono::milliseconds{day.startOfDay().toMSecsSinceEpoch()}};
}

} // namespace nimbrelle::DayKey
