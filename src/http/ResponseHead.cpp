#include "http/ResponseHead.h"

#include <algorithm>
#include <string_view>

namespace nimbrelle {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isTokenCharacter(char c)
{
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return isLetter || isDigit(c) || std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
}

bool isValueCharacter(char c)
{
    return c == '\t' || (static_cast<unsigned char>(c) >= 0x20 && c != 0x7f);
}

template <class Predicate> bool holdsForAll(QByteArrayView text, Predicate predicate)
{
    return std::all_of(text.begin(), text.end(), predicate);
}

} // namespace

QByteArrayList ResponseHead::values(QByteArrayView name) const
{
    QByteArrayList result;
    for (const auto &[each, value] : headers) {
        if (each == name)
            result.append(value);
    }
    return result;
}

void ResponseHeadReader::read(QByteArrayView &bytes)
{
    while (!m_isComplete && !m_fault && !bytes.isEmpty()) {
        const std::optional<QByteArray> line = m_lines.next(bytes);
        if (m_lines.isExceeded())
            m_fault = ResponseFault::oversized;
        else if (line && !takeLine(*line))
            m_fault = ResponseFault::malformed;
    }
}

bool ResponseHeadReader::takeLine(const QByteArray &line)
{
    if (m_head.status == 0)
        return takeStatus(line);
    return line.isEmpty() ? takeEnd() : takeHeader(line);
}

// "HTTP/1.1 200 OK"; many servers leave out the words, some the blank before them.
bool ResponseHeadReader::takeStatus(const QByteArray &line)
{
    constexpr qsizetype version = 7, status = 9, rest = 12;
    const bool isStatusLine = line.size() >= rest && line.startsWith("HTTP/1.") && isDigit(line[version])
        && line[version + 1] == ' ' && holdsForAll(line.sliced(status, 3), isDigit)
        && holdsForAll(QByteArrayView(line).sliced(rest), isValueCharacter);
    if (!isStatusLine || (line.size() > rest && line[rest] != ' '))
        return false;
    m_head.status = line.sliced(status, 3).toInt();
    constexpr int switchingProtocols = 101; // we never ask for it
    return m_head.status >= 100 && m_head.status != switchingProtocols;
}

// A line that begins with a blank would continue the one before, in a form that is long obsolete; its "name"
// is none, as is one with a blank before the colon.
bool ResponseHeadReader::takeHeader(const QByteArray &line)
{
    const qsizetype colon = line.indexOf(':');
    if (colon <= 0)
        return false;
    const QByteArray name = line.first(colon);
    const QByteArray value = line.sliced(colon + 1).trimmed();
    m_head.headers.emplaceBack(name.toLower(), value);
    return holdsForAll(name, isTokenCharacter) && holdsForAll(value, isValueCharacter);
}

bool ResponseHeadReader::takeEnd()
{
    m_isComplete = m_head.status >= 200;
    if (!m_isComplete)
        m_head = {};
    return true;
}

} // namespace nimbrelle
