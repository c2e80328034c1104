#pragma once

#include "frame/Failure.h"

#include <QNetworkReply>

namespace nimbrelle {

/// A server could not be reached, or the way to it broke. What the server said is never one of these.
class TransportError : public Failure {
public:
    enum class Kind { noNetwork, hostNotFound, refused, lost, timedOut, tls, proxy, cancelled, other };

    explicit TransportError(Kind kind);

    Kind kind() const { return m_kind; }

    /// A time-out of ours looks like a cancellation to the network layer; who set it must tell them apart.
    static Kind kindOf(QNetworkReply::NetworkError error);

private:
    Kind m_kind;
};

/// Whether `error` tells of the way to the server. Statuses from 400 on come as errors of other kinds.
bool isTransportFailure(QNetworkReply::NetworkError error);

} // namespace nimbrelle
