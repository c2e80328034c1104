#pragma once

#include "http/BoundedLines.h"

#include <QByteArrayList>
#include <QList>

#include <utility>

namespace nimbrelle {

enum class ResponseFault {
    malformed, ///< not HTTP/1
    oversized, ///< its headers, or what stands around its chunks, have more than 64 KB
    cutShort, ///< the connection was closed before its end
};

/// Status and headers of an HTTP/1 response.
struct ResponseHead {
    int status = 0;
    QList<std::pair<QByteArray, QByteArray>> headers; ///< in their order; names in lower case

    /// All values under this name, which is in lower case.
    QByteArrayList values(QByteArrayView name) const;
};

/// Reads the head of a response as its bytes come. Interim responses (1xx) before it are passed over, but
/// count for its limit.
class ResponseHeadReader {
public:
    static constexpr qsizetype limit = 64 * 1024;

    /// Takes what belongs to the head off the front of `bytes`.
    void read(QByteArrayView &bytes);

    bool isComplete() const { return m_isComplete; }
    const std::optional<ResponseFault> &fault() const { return m_fault; }
    const ResponseHead &head() const { return m_head; }

private:
    bool takeLine(const QByteArray &line);
    bool takeStatus(const QByteArray &line);
    bool takeHeader(const QByteArray &line);
    bool takeEnd();

    BoundedLines m_lines{limit};
    ResponseHead m_head;
    bool m_isComplete = false;
    std::optional<ResponseFault> m_fault;
};

} // namespace nimbrelle
