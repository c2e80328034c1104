#pragma once

#include <QString>

#include <array>
#include <chrono>
#include <optional>
#include <string_view>

namespace nimbrelle {

/// A moment in UTC. Fractions of a second live in memory only: every text form has whole seconds.
using Timestamp = std::chrono::sys_time<std::chrono::microseconds>;

/// Earlier than every moment that the program can meet, and still safe to subtract from.
inline constexpr Timestamp distantPast = std::chrono::sys_days{std::chrono::year{1} / 1 / 1};

/// The latest moment that the text form can hold.
inline constexpr Timestamp distantFuture =
    std::chrono::sys_days{std::chrono::year{9999} / 12 / 31} + std::chrono::seconds{86399};

/// A day is always 86,400 seconds here; local days exist only as DayKey.
inline constexpr double secondsPerDay = 86400;

/// From `earlier` to `later` in days, with its fraction; negative when they are the other way round.
double daysBetween(Timestamp earlier, Timestamp later);

/// `days` whole days after `from`, held inside distantPast and distantFuture whatever the count.
Timestamp addDays(Timestamp from, qint64 days);

/// `seconds` after `from`, held inside distantPast and distantFuture.
Timestamp addSeconds(Timestamp from, double seconds);

/// The one text form, 2026-03-01T08:30:05Z: the fraction is dropped, years outside 1 to 9999 are clamped.
QString isoText(Timestamp time);
std::array<char, 20> isoCharacters(Timestamp time);

/// Reads exactly that form; absent for any other, valid ISO 8601 or not. What lies before distantPast is held
/// there.
std::optional<Timestamp> timestampFromIso(std::string_view text);
std::optional<Timestamp> timestampFromIso(QStringView text);

} // namespace nimbrelle
