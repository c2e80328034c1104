#pragma once

#include "frame/Failure.h"

#include <exception>

namespace nimbrelle {

/// The server answered, but not with what was asked for. A server without an answer is a TransportError.
class SyncError : public Failure {
public:
    enum class Kind {
        http, ///< a status that the request doesn't accept
        busy, ///< other devices wrote in between at every attempt
    };

    /// Status 0 stands for a response that is not HTTP.
    static SyncError http(qint64 status);
    static SyncError busy();

    Kind kind() const { return m_kind; }
    qint64 status() const { return m_status; }

private:
    SyncError(Kind kind, qint64 status, const QString &text);

    Kind m_kind;
    qint64 m_status;
};

/// The server's document breaks its form, or has no end.
Failure unreadableBundle();

/// The one sentence that the user sees.
QString describe(const std::exception &error);

/// The raw text of the error, for the command line.
QString detailOf(const std::exception &error);

} // namespace nimbrelle
