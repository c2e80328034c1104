#pragma once

#include <QList>
#include <QString>

/// The report's pictures as inline SVG. They stretch to the width that there is, so all text stands beside
/// them, and each has a title that says what it shows.
namespace nimbrelle::charts {

/// One part of every column, the lowest first.
struct Layer {
    const char *style; ///< its class in the page's style
    QList<qint64> values; ///< one for each column
};

struct Columns {
    QString title;
    QStringList names; ///< of the columns, shown when pointed at
    QList<Layer> layers;
    bool isTall = false;
};

/// The highest column.
qint64 highest(const QList<Layer> &layers);

QString columns(const Columns &columns);

/// Where the true share lies, what was seen and what was expected, on a scale from `from` to 1.
struct Share {
    QString title;
    double from = 0;
    double low = 0, high = 0;
    double seen = 0, expected = 0;
};
QString share(const Share &share);

/// A bar of that part of the full length. It repeats a number beside it, and is left out when read aloud.
QString length(double part);

} // namespace nimbrelle::charts
