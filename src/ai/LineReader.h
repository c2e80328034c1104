#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>

namespace nimbrelle {

/// Turns bytes that arrive in pieces, cut anywhere, into lines without their ends. A line ends at LF or CR,
/// so that CR LF is followed by an empty line. Bytes stay bytes: a character cut in two is whole again in its
/// line.
class LineReader {
public:
    /// The lines that `bytes` complete.
    QByteArrayList read(QByteArrayView bytes);
    /// The last line, when the text ended without an end of line; absent when nothing is left.
    std::optional<QByteArray> finish();

private:
    QByteArray m_line;
};

} // namespace nimbrelle
