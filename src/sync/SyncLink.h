#pragma once

#include <QString>

#include <optional>

namespace nimbrelle {

struct AppConfig;

/// The three things that connect a device to a sync server. The text form holds the secret: it is shown and
/// copied for the user's own devices only.
struct SyncLink {
    QString server; ///< HTTPS base address, without a trailing slash
    QString token; ///< bearer secret, at least 16 characters
    QString pin; ///< lower-case hexadecimal SHA-256 of the server's leaf certificate in DER form

    /// Absent while any of the three settings is empty, which is how "not connected" is said everywhere.
    static std::optional<SyncLink> fromConfig(const AppConfig &config);

    /// The first sync code in `text`, whatever stands before it and, after white space, behind it. Absent
    /// when there is none or it is no good; no reason is given.
    static std::optional<SyncLink> fromText(const QString &text);

    /// nimbrelle://sync?server=…&token=…&pin=…
    QString text() const;

    /// The host of the server, or the whole server text where none can be read from it.
    QString host() const;

    bool operator==(const SyncLink &) const = default;
};

} // namespace nimbrelle
