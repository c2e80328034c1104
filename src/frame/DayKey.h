#pragma once

#include "frame/Timestamp.h"

/// The program's notion of a calendar day: "yyyy-MM-dd" in the user's time zone. The same moment can have
/// different keys on two devices.
namespace nimbrelle::DayKey {

QString string(Timestamp date);

/// Local midnight of the key, or the day's first moment where a clock change skips midnight. Absent unless
/// `key` is exactly of the form, with a date that exists.
std::optional<Timestamp> date(QStringView key);

} // namespace nimbrelle::DayKey
