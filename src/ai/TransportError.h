#pragma once

#include "frame/Failure.h"

#include <optional>

class QNetworkReply;

namespace nimbrelle {

/// A server could not be reached, or the connection to it broke. What a server answers, with whatever status,
/// is never one of these.
class TransportError : public Failure {
public:
    enum class Kind { noNetwork, hostNotFound, refused, lost, timedOut, tls, certificate, proxy, other };

    /// `detail`: the network layer's own words, for the command line.
    explicit TransportError(Kind kind, QString detail = {});

    Kind kind() const { return m_kind; }
    const QString &detail() const { return m_detail; }

    /// Why a finished reply is no answer; absent when it is one. The caller knows whether it aborted the
    /// reply: the abort of a time limit, which looks the same, counts as timedOut.
    static std::optional<TransportError> of(const QNetworkReply &reply);

private:
    Kind m_kind;
    QString m_detail;
};

} // namespace nimbrelle
