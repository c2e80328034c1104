#pragma once

#include "frame/Timestamp.h"

#include <QString>
#include <QUuid>

#include <ostream>

// How GoogleTest shows our values when an expectation fails.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QUuid &id, std::ostream *out)
{
    *out << id.toString().toStdString();
}

namespace std::chrono {
inline void PrintTo(const nimbrelle::Timestamp &time, std::ostream *out)
{
    *out << nimbrelle::isoText(time).toStdString() << " + " << (time.time_since_epoch() % seconds{1}).count()
         << "us";
}
} // namespace std::chrono
