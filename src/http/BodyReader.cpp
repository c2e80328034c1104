#include "http/BodyReader.h"

#include <algorithm>

namespace nimbrelle {

namespace {

constexpr int noContent = 204;
constexpr int notModified = 304;

// Of digits alone, unlike what the text functions read.
template <class IsDigit>
std::optional<qint64> numberOf(QByteArrayView text, qsizetype most, int base, IsDigit isDigit)
{
    if (text.isEmpty() || text.size() > most || !std::all_of(text.begin(), text.end(), isDigit))
        return std::nullopt;
    bool fits = false;
    const qint64 number = text.toByteArray().toLongLong(&fits, base);
    return fits ? std::optional(number) : std::nullopt;
}

std::optional<qint64> decimal(QByteArrayView text)
{
    return numberOf(text, 19, 10, [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<qint64> hexadecimal(QByteArrayView text)
{
    return numberOf(text, 16, 16,
        [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); });
}

// A length may be told several times, in one header or in more, as long as it is the same.
std::optional<qint64> lengthOf(const QByteArrayList &values)
{
    std::optional<qint64> length;
    for (const QByteArray &each : values.join(',').split(',')) {
        const std::optional<qint64> one = decimal(each.trimmed());
        if (!one || (length && *length != *one))
            return std::nullopt;
        length = one;
    }
    return length;
}

} // namespace

std::optional<BodyFraming> BodyFraming::of(const ResponseHead &head)
{
    if (head.status == noContent || head.status == notModified)
        return BodyFraming{.kind = Kind::sized};
    const QByteArrayList codings = head.values("transfer-encoding");
    const QByteArrayList lengths = head.values("content-length");
    if (!codings.isEmpty()) { // goes before a length
        const bool isChunked = codings.join(',').compare("chunked", Qt::CaseInsensitive) == 0;
        return isChunked ? std::optional(BodyFraming{.kind = Kind::chunked}) : std::nullopt;
    }
    if (lengths.isEmpty())
        return BodyFraming{.kind = Kind::untilClose};
    const std::optional<qint64> length = lengthOf(lengths);
    return length ? std::optional(BodyFraming{.kind = Kind::sized, .size = *length}) : std::nullopt;
}

BodyReader::BodyReader(BodyFraming framing) : m_left(framing.size)
{
    switch (framing.kind) {
    case BodyFraming::Kind::sized:
        m_state = m_left > 0 ? State::sized : State::complete;
        return;
    case BodyFraming::Kind::chunked:
        m_state = State::chunkSize;
        return;
    case BodyFraming::Kind::untilClose:
        break;
    }
    m_state = State::untilClose;
}

QByteArray BodyReader::read(QByteArrayView bytes)
{
    QByteArray body;
    while (!bytes.isEmpty() && !m_fault && !isComplete()) {
        const bool isData =
            m_state == State::untilClose || m_state == State::sized || m_state == State::chunkData;
        if (isData)
            body.append(takeData(bytes));
        else
            takeLine(bytes);
    }
    return body;
}

void BodyReader::end()
{
    if (m_state == State::untilClose)
        m_state = State::complete;
    else if (!isComplete() && !m_fault)
        m_fault = ResponseFault::cutShort;
}

QByteArrayView BodyReader::takeData(QByteArrayView &bytes)
{
    if (m_state == State::untilClose)
        return std::exchange(bytes, {});
    const auto count = static_cast<qsizetype>(std::min<qint64>(m_left, bytes.size()));
    const QByteArrayView data = bytes.first(count);
    bytes = bytes.sliced(count);
    m_left -= count;
    if (m_left == 0)
        m_state = m_state == State::sized ? State::complete : State::chunkEnd;
    return data;
}

void BodyReader::takeLine(QByteArrayView &bytes)
{
    const std::optional<QByteArray> line = m_lines.next(bytes);
    if (m_lines.isExceeded())
        m_fault = ResponseFault::oversized;
    else if (line && !isTaken(*line))
        m_fault = ResponseFault::malformed;
}

bool BodyReader::isTaken(const QByteArray &line)
{
    if (m_state == State::chunkSize)
        return takeChunkSize(line);
    if (m_state == State::chunkEnd)
        return takeChunkEnd(line);
    if (line.isEmpty())
        m_state = State::complete;
    return true; // nothing in a trailer concerns us
}

bool BodyReader::takeChunkSize(const QByteArray &line)
{
    const QByteArray digits = line.first(line.indexOf(';') < 0 ? line.size() : line.indexOf(';')).trimmed();
    const std::optional<qint64> size = hexadecimal(digits);
    if (!size)
        return false;
    m_lines.giveBack(digits.size() + 2);
    m_left = *size;
    m_state = m_left > 0 ? State::chunkData : State::trailers;
    return true;
}

bool BodyReader::takeChunkEnd(const QByteArray &line)
{
    m_lines.giveBack(2);
    m_state = State::chunkSize;
    return line.isEmpty();
}

} // namespace nimbrelle
