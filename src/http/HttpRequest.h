#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <utility>

namespace nimbrelle {

/// One request, as its sender makes it. Host, length and what concerns the connection are added to the
/// headers.
struct HttpRequest {
    enum class Target {
        path,
        absolute, ///< the whole address, for a proxy that passes the request on
    };

    QByteArray method;
    QUrl url;
    QList<std::pair<QByteArray, QByteArray>> headers; ///< without control characters; the sender sees to it
    QByteArray body;

    /// What goes before the body.
    QByteArray head(Target target) const;
};

} // namespace nimbrelle
