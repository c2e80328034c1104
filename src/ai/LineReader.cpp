#include "ai/LineReader.h"

namespace nimbrelle {

QByteArrayList LineReader::read(QByteArrayView bytes)
{
    QByteArrayList lines;
    qsizetype from = 0;
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        if (bytes[at] != '\n' && bytes[at] != '\r')
            continue;
        lines.append(m_line.append(bytes.sliced(from, at - from)));
        m_line.clear();
        from = at + 1;
    }
    m_line.append(bytes.sliced(from));
    return lines;
}

std::optional<QByteArray> LineReader::finish()
{
    if (m_line.isEmpty())
        return std::nullopt;
    return std::exchange(m_line, {});
}

} // namespace nimbrelle
