#pragma once

#include "export/GrowthReport.h"
#include "support/Words.h"

namespace nimbrelle {

inline Timestamp utc(const char *iso)
{
    return *timestampFromIso(std::string_view{iso});
}

inline std::chrono::local_days day(int year, int month, int date)
{
    return std::chrono::local_days{std::chrono::year{year} / month / date};
}

/// A notebook and its log, put together by hand.
struct History : GrowthSource {
    QTimeZone zone{"Asia/Shanghai"};

    void log(const char *time, const char *kind, const char *word, const char *detail = nullptr)
    {
        events.append({.time = utc(time),
            .kind = QString::fromUtf8(kind),
            .word = QString::fromUtf8(word),
            .detail = detail ? std::optional(QString::fromUtf8(detail)) : std::nullopt});
    }

    WordEntry &add(const char *headword, const char *createdAt, std::optional<Stage> stage = std::nullopt)
    {
        WordEntry word = wordNamed(QString::fromUtf8(headword));
        word.createdAt = utc(createdAt);
        word.stage = stage;
        words.append(word);
        return words.last();
    }

    GrowthReport at(const char *now) const { return makeGrowthReport(*this, utc(now), zone); }
};

} // namespace nimbrelle
