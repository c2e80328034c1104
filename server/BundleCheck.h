#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace nimbrelle::server {

/// How many words a document holds: the elements of "words", 0 when the key is missing or null.
/// Absent when the bytes aren't one JSON object in UTF-8, when "words" is something else than a list, or when
/// the nesting is deeper than any notebook's. Nothing else of the document is looked at.
std::optional<std::int64_t> countWords(std::string_view document);

} // namespace nimbrelle::server
