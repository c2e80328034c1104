#pragma once

#include "notebook/SyncBundle.h"
#include "sync/SyncTransport.h"

namespace nimbrelle {

/// What the server holds, as far as it had to tell.
struct SyncReading {
    enum class Kind {
        unchanged, ///< still the version that was named
        nothingStored,
        document,
    };

    Kind kind = Kind::nothingStored;
    qint64 version = 0; ///< of a document
    SyncBundle document; ///< empty unless it is one
    QString hash; ///< of the document as decoded; empty unless there is one
};

/// The conversation with the server: three requests, and which statuses each takes. Every other status
/// becomes SyncError::http.
class SyncProtocol {
public:
    explicit SyncProtocol(SyncTransport &transport) : m_transport(transport) { }

    QCoro::Task<> ping(std::stop_token stop);

    /// A `known` version above 0 lets the server answer that nothing has changed.
    QCoro::Task<SyncReading> read(qint64 known, std::stop_token stop);

    /// The new version, or absent when the server holds another one than `base`.
    QCoro::Task<std::optional<qint64>> write(qint64 base, QByteArray json, std::stop_token stop);

    /// The version in an ETag, weak or strong; 0 for anything that is no number.
    static qint64 versionOf(const QByteArray &eTag);

private:
    SyncTransport &m_transport;
};

} // namespace nimbrelle
