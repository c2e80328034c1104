#pragma once

#include <QString>

#include <optional>

namespace nimbrelle {

/// Whether the session starts this program by itself.
class LaunchAtLogin {
public:
    virtual ~LaunchAtLogin() = default;

    virtual bool isEnabled() const = 0;

    /// The failure's text; absent when it worked.
    virtual std::optional<QString> setEnabled(bool enabled) = 0;
};

} // namespace nimbrelle
