#include "http/ResponseReader.h"

namespace nimbrelle {

QByteArray ResponseReader::read(QByteArrayView bytes)
{
    if (m_fault)
        return {};
    m_head.read(bytes);
    m_fault = m_head.fault();
    if (m_head.isComplete() && !m_body)
        beginBody();
    if (!m_body)
        return {};
    QByteArray body = m_body->read(bytes);
    m_fault = m_body->fault();
    return body;
}

void ResponseReader::beginBody()
{
    const std::optional<BodyFraming> framing = m_expected == Body::none
        ? BodyFraming{.kind = BodyFraming::Kind::sized}
        : BodyFraming::of(m_head.head());
    if (framing)
        m_body.emplace(*framing);
    else
        m_fault = ResponseFault::malformed;
}

void ResponseReader::end()
{
    if (m_fault)
        return;
    if (!m_body) {
        m_fault = ResponseFault::cutShort;
        return;
    }
    m_body->end();
    m_fault = m_body->fault();
}

} // namespace nimbrelle
