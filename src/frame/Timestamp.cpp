#include "frame/Timestamp.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle {

namespace {

void putDigits(char *at, int width, unsigned value)
{
    for (int i = width - 1; i >= 0; --i) {
        at[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

std::optional<unsigned> digits(std::string_view text)
{
    unsigned value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return std::nullopt;
        value = value * 10 + static_cast<unsigned>(c - '0');
    }
    return value;
}

} // namespace

double daysBetween(Timestamp earlier, Timestamp later)
{
    return std::chrono::duration<double>(later - earlier).count() / secondsPerDay;
}

Timestamp addDays(Timestamp from, qint64 days)
{
    constexpr qint64 longest = std::chrono::floor<std::chrono::days>(distantFuture - distantPast).count();
    const auto step = std::chrono::days{std::clamp<qint64>(days, -longest, longest)};
    return std::clamp(from + step, distantPast, distantFuture);
}

Timestamp addSeconds(Timestamp from, double seconds)
{
    const double longest = std::chrono::duration<double>(distantFuture - distantPast).count();
    const std::chrono::duration<double> step{
        std::clamp(std::isnan(seconds) ? 0 : seconds, -longest, longest)};
    return std::clamp(from + std::chrono::round<std::chrono::microseconds>(step), distantPast, distantFuture);
}

std::array<char, 20> isoCharacters(Timestamp time)
{
    using namespace std::chrono;
    const auto whole = floor<seconds>(std::clamp(time, distantPast, distantFuture));
    const auto day = floor<days>(whole);
    const year_month_day date{day};
    const hh_mm_ss clock{whole - day};

    std::array<char, 20> text{"0000-00-00T00:00:00"};
    putDigits(&text[0], 4, static_cast<unsigned>(static_cast<int>(date.year())));
    putDigits(&text[5], 2, static_cast<unsigned>(date.month()));
    putDigits(&text[8], 2, static_cast<unsigned>(date.day()));
    putDigits(&text[11], 2, static_cast<unsigned>(clock.hours().count()));
    putDigits(&text[14], 2, static_cast<unsigned>(clock.minutes().count()));
    putDigits(&text[17], 2, static_cast<unsigned>(clock.seconds().count()));
    text[19] = 'Z';
    return text;
}

QString isoText(Timestamp time)
{
    const auto text = isoCharacters(time);
    return QString::fromLatin1(text.data(), text.size());
}

std::optional<Timestamp> timestampFromIso(std::string_view text)
{
    using namespace std::chrono;
    if (text.size() != 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':'
        || text[16] != ':' || text[19] != 'Z')
        return std::nullopt;
    const auto y = digits(text.substr(0, 4)), mo = digits(text.substr(5, 2)), d = digits(text.substr(8, 2));
    const auto h = digits(text.substr(11, 2)), mi = digits(text.substr(14, 2)),
               s = digits(text.substr(17, 2));
    if (!y || !mo || !d || !h || !mi || !s || *h > 23 || *mi > 59 || *s > 59)
        return std::nullopt;
    const year_month_day date{year{static_cast<int>(*y)}, month{*mo}, day{*d}};
    if (!date.ok())
        return std::nullopt;
    // The year 0000 can be read, but not be written.
    return std::max<Timestamp>(sys_days{date} + hours{*h} + minutes{*mi} + seconds{*s}, distantPast);
}

std::optional<Timestamp> timestampFromIso(QStringView text)
{
    if (text.size() != 20)
        return std::nullopt;
    const QByteArray ascii = text.toLatin1(); // anything beyond Latin-1 becomes '?', which is no digit
    return timestampFromIso(std::string_view{ascii.constData(), static_cast<std::size_t>(ascii.size())});
}

} // namespace nimbrelle
