#pragma once

#include "frame/Failure.h"

namespace nimbrelle {

/// What the AI provider refused, or what keeps us from asking it. A provider that could not be reached is a
/// TransportError.
class AIError : public Failure {
public:
    enum class Kind {
        http, ///< a status of no other kind; it is in the text, with what the provider said
        noKey,
        unauthorized,
        noBalance,
        badResponse, ///< a reply that can't be read, or an address that is not valid
    };

    /// Of a kind other than http.
    explicit AIError(Kind kind);
    /// For any status but 200. `detail` is what the provider said; its first 200 characters are shown,
    /// without the key.
    static AIError ofStatus(qint64 status, const QString &detail, const QString &key);

    Kind kind() const { return m_kind; }
    /// The status of the kind http, else 0.
    qint64 status() const { return m_status; }

private:
    AIError(qint64 status, const QString &text);

    Kind m_kind;
    qint64 m_status = 0;
};

} // namespace nimbrelle
