#pragma once

#include <QString>

#include <optional>

namespace nimbrelle {

/// Where a text was met. Each of the three may be absent by itself.
struct PageSource {
    std::optional<QString> app; ///< the application's display name
    std::optional<QString> url; ///< http, https or file only
    std::optional<QString> title; ///< the window's; never empty

    /// The host of the page without a leading "www.", or the last path component of a file address.
    std::optional<QString> host() const;

    /// What tells sources apart in the notebook: the host, else the application.
    std::optional<QString> sourceKey() const;

    bool operator==(const PageSource &) const = default;
};

/// The rule of PageSource::host for an address alone.
std::optional<QString> hostOf(const std::optional<QString> &url);

/// "来自 Firefox · example.org"; empty when nothing is known.
QString sourceLine(const PageSource &source, bool showTitle);

} // namespace nimbrelle
