#include "http/BoundedLines.h"

#include <algorithm>
#include <utility>

namespace nimbrelle {

std::optional<QByteArray> BoundedLines::next(QByteArrayView &bytes)
{
    const qsizetype end = bytes.indexOf('\n');
    const qsizetype count = end < 0 ? bytes.size() : end + 1;
    m_isExceeded = count > m_left;
    if (m_isExceeded)
        return std::nullopt;
    m_left -= count;
    m_begun.append(bytes.first(count));
    bytes = bytes.sliced(count);
    if (end < 0)
        return std::nullopt;
    QByteArray line = std::exchange(m_begun, {});
    line.chop(line.endsWith("\r\n") ? 2 : 1);
    return line;
}

void BoundedLines::giveBack(qsizetype count)
{
    m_left = std::min(m_left + count, m_limit);
}

} // namespace nimbrelle
