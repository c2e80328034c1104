#pragma once

#include "frame/Failure.h"

#include <QAbstractSocket>

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

    /// Why a socket gave up; `detail` is what it says itself.
    static TransportError ofSocket(QAbstractSocket::SocketError error, const QString &detail);

private:
    Kind m_kind;
    QString m_detail;
};

} // namespace nimbrelle
