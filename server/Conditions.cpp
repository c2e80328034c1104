#include "server/Conditions.h"

#include <algorithm>

namespace nimbrelle::server {

namespace {

constexpr std::string_view blanks = " \t";

void skip(std::string_view &text, std::string_view characters)
{
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
}

bool isOpaque(char character)
{
    const auto value = static_cast<unsigned char>(character);
    return value >= 0x21 && value != '"' && value != 0x7f;
}

// Takes what stands before the closing quote; absent when there is none.
std::optional<std::string> takeQuoted(std::string_view &text)
{
    if (!text.starts_with('"'))
        return std::nullopt;
    const auto end = text.find('"', 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    std::string opaque(text.substr(1, end - 1));
    text.remove_prefix(end + 1);
    return std::ranges::all_of(opaque, isOpaque) ? std::optional(opaque) : std::nullopt;
}

} // namespace

std::optional<EntityTags> EntityTags::parse(std::string_view text)
{
    EntityTags tags;
    text = text.substr(0, text.find_last_not_of(blanks) + 1);
    skip(text, blanks);
    if (text == "*") {
        tags.m_any = true;
        return tags;
    }
    for (skip(text, " \t,"); !text.empty(); skip(text, " \t,")) {
        const bool weak = text.starts_with("W/");
        text.remove_prefix(weak ? 2 : 0);
        const auto opaque = takeQuoted(text);
        skip(text, blanks);
        if (!opaque || (!text.empty() && text.front() != ','))
            return std::nullopt;
        tags.m_tags.push_back({.opaque = *opaque, .weak = weak});
    }
    return tags.m_tags.empty() ? std::nullopt : std::optional(tags);
}

bool EntityTags::matchStrongly(std::int64_t version) const
{
    const auto own = std::to_string(version);
    return (m_any && version > 0)
        || std::ranges::any_of(m_tags, [&](const Tag &tag) { return !tag.weak && tag.opaque == own; });
}

bool EntityTags::matchWeakly(std::int64_t version) const
{
    const auto own = std::to_string(version);
    return (m_any && version > 0)
        || std::ranges::any_of(m_tags, [&](const Tag &tag) { return tag.opaque == own; });
}

std::string entityTag(std::int64_t version)
{
    return '"' + std::to_string(version) + '"';
}

bool Conditions::allowWriteOver(std::int64_t version) const
{
    return (!ifMatch || ifMatch->matchStrongly(version))
        && (!ifNoneMatch || !ifNoneMatch->matchWeakly(version));
}

} // namespace nimbrelle::server
