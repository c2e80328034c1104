#pragma once

#include <QUrl>

#include <optional>

namespace nimbrelle {

/// Where requests go for the address of the settings: "{base}/chat/completions", with the blanks and slashes
/// at the ends of the base left out. Absent when that is no address with a scheme and a host; a line break at
/// its end is not trimmed, and so makes it none.
std::optional<QUrl> chatAddress(const QString &baseURL);

} // namespace nimbrelle
