#pragma once

#include "frame/Failure.h"

#include <exception>

namespace nimbrelle {

/// What the server made of a request.
class SyncError : public Failure {
public:
    enum class Kind {
        http, ///< a status that the request can't take
        busy, ///< other devices wrote in between at every attempt
    };

    /// 0 stands for a response that is no HTTP response.
    static SyncError http(qint64 status);
    static SyncError busy();

    Kind kind() const { return m_kind; }
    qint64 status() const { return m_status; }

private:
    SyncError(Kind kind, qint64 status, const QString &text);

    Kind m_kind;
    qint64 m_status;
};

/// The exchange did not come about.
class SyncTransportError : public Failure {
public:
    enum class Kind {
        certificate, ///< the server did not show the certificate of the pin; nothing was sent
        connection,
    };

    SyncTransportError(Kind kind, QString detail);

    Kind kind() const { return m_kind; }
    /// The platform's own words, not for the card or the settings.
    const QString &detail() const { return m_detail; }

private:
    Kind m_kind;
    QString m_detail;
};

/// The one sentence that the user sees.
QString describe(const std::exception &error);

/// The raw text behind it, for the command line.
QString detailOf(const std::exception &error);

} // namespace nimbrelle
