#pragma once

#include "http/BodyReader.h"

namespace nimbrelle {

/// Reads one HTTP/1 response as its bytes come. However they are cut, the outcome is the same, and the work
/// is linear in their number. What follows a complete response is passed over.
class ResponseReader {
public:
    enum class Body { asFramed, none /*!< as after HEAD */ };

    explicit ResponseReader(Body body = Body::asFramed) : m_expected(body) { }

    /// Takes all bytes; the part of the body that is in them.
    QByteArray read(QByteArrayView bytes);
    /// The connection was closed.
    void end();

    bool hasHead() const { return m_body.has_value(); }
    bool isComplete() const { return m_body && m_body->isComplete(); }
    const std::optional<ResponseFault> &fault() const { return m_fault; }
    /// 0 until the head is known.
    int status() const { return hasHead() ? m_head.head().status : 0; }
    /// The first value under this name, which is in lower case; empty when there is none.
    QByteArray header(QByteArrayView name) const { return m_head.head().values(name).value(0); }

private:
    void beginBody();

    Body m_expected;
    ResponseHeadReader m_head;
    std::optional<BodyReader> m_body; ///< once the head is known
    std::optional<ResponseFault> m_fault;
};

} // namespace nimbrelle
