#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbrelle::server {

/// The value of If-Match or If-None-Match: "*" or a list of entity tags.
/// A document's own tag is its version as decimal digits in quotes. Version 0 stands for "nothing stored":
/// it has the tag "0", but "*" doesn't cover it.
class EntityTags {
public:
    /// Absent when the text isn't well-formed; several header lines are joined with a comma beforehand.
    static std::optional<EntityTags> parse(std::string_view text);

    /// As a write needs it: a weak tag never matches.
    bool matchStrongly(std::int64_t version) const;
    /// As a read needs it: W/"7" and "7" are the same.
    bool matchWeakly(std::int64_t version) const;

private:
    struct Tag {
        std::string opaque;
        bool weak = false;
    };

    bool m_any = false;
    std::vector<Tag> m_tags;
};

std::string entityTag(std::int64_t version);

/// The conditions of one request.
struct Conditions {
    std::optional<EntityTags> ifMatch;
    std::optional<EntityTags> ifNoneMatch;

    bool isEmpty() const { return !ifMatch && !ifNoneMatch; }
    bool allowWriteOver(std::int64_t version) const;
};

} // namespace nimbrelle::server
