#include "practice/Failure.h"

#include <algorithm>
#include <array>
#include <utility>

namespace nimbrelle::practice {

std::optional<Failure> failureNamed(std::string_view name)
{
    static constexpr std::array<std::pair<std::string_view, Failure>, 6> names = {
        {{"401", Failure::unauthorized}, {"402", Failure::noBalance}, {"500", Failure::serverError},
            {"slow", Failure::slow}, {"cut", Failure::cut}, {"garbage", Failure::garbage}}};
    const auto found = std::ranges::find(names, name, &std::pair<std::string_view, Failure>::first);
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

Failure failureOfKey(std::string_view key)
{
    constexpr std::string_view mark = "fail-";
    if (key.empty() || key == "wrong")
        return Failure::unauthorized;
    return key.starts_with(mark) ? failureNamed(key.substr(mark.size())).value_or(Failure::none)
                                 : Failure::none;
}

} // namespace nimbrelle::practice
