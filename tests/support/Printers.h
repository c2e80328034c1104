#pragma once

#include "frame/Timestamp.h"

#include <QString>
#include <QUuid>

#include <gtest/gtest.h>
#include <ostream>

// How GoogleTest shows our values when an expectation fails.

namespace testing::internal {

template <> class UniversalPrinter<QString> {
public:
    static void Print(const QString &text, std::ostream *out) { *out << '"' << text.toStdString() << '"'; }
};

template <> class UniversalPrinter<QUuid> {
public:
    static void Print(const QUuid &id, std::ostream *out) { *out << id.toString().toStdString(); }
};

} // namespace testing::internal

namespace std::chrono {
inline void PrintTo(const nimbrelle::Timestamp &time, std::ostream *out)
{
    *out << nimbrelle::isoText(time).toStdString() << " + " << (time.time_since_epoch() % seconds{1}).count()
         << "us";
}
} // namespace std::chrono
