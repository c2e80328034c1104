#pragma once

#include "http/ResponseHead.h"

namespace nimbrelle {

/// Where the body of a response ends.
struct BodyFraming {
    enum class Kind { sized, chunked, untilClose };

    Kind kind = Kind::untilClose;
    qint64 size = 0; ///< of a sized one; 0 for a response that has no body

    /// As the headers tell of a response that may have a body; absent when they contradict themselves or name
    /// a coding that nobody asked for.
    static std::optional<BodyFraming> of(const ResponseHead &head);
};

/// Reads the body of a response as its bytes come.
class BodyReader {
public:
    /// How many bytes chunk extensions and trailers may have in all.
    static constexpr qsizetype limit = 64 * 1024;

    explicit BodyReader(BodyFraming framing);

    /// Takes all bytes; the part of the body that is in them.
    QByteArray read(QByteArrayView bytes);
    /// The connection was closed.
    void end();

    bool isComplete() const { return m_state == State::complete; }
    const std::optional<ResponseFault> &fault() const { return m_fault; }

private:
    enum class State { untilClose, sized, chunkSize, chunkData, chunkEnd, trailers, complete };

    QByteArrayView takeData(QByteArrayView &bytes);
    void takeLine(QByteArrayView &bytes);
    bool isTaken(const QByteArray &line);
    bool takeChunkSize(const QByteArray &line);
    bool takeChunkEnd(const QByteArray &line);

    State m_state;
    qint64 m_left; ///< of a sized body or of the chunk under way
    BoundedLines m_lines{limit};
    std::optional<ResponseFault> m_fault;
};

} // namespace nimbrelle
