#pragma once

#include <QString>

namespace nimbrelle {

/// A stretch of a text, in UTF-16 units.
struct TextRange {
    qsizetype start = 0;
    qsizetype length = 0;

    bool operator==(const TextRange &) const = default;
};

} // namespace nimbrelle
