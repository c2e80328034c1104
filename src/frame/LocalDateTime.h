#pragma once

#include "frame/Timestamp.h"

#include <QDateTime>

/// Moments by the clock on the user's wall.
namespace nimbrelle {

QDateTime localDateTime(Timestamp time);

/// For the user, as 2026 年 3 月 1 日 16:30.
QString localTimeText(const QDateTime &time);
/// The same without the year, if that is the year of `now`.
QString localTimeText(const QDateTime &time, const QDateTime &now);

/// As part of a file's name, as 20260301-163000.
inline const QString fileTimeForm = QStringLiteral("yyyyMMdd-HHmmss");

} // namespace nimbrelle
