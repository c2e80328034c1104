#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace nimbrelle {

/// Cuts bytes that come piece by piece into lines, which end in LF or CR LF, and takes no more than its limit
/// of them in all.
class BoundedLines {
public:
    explicit BoundedLines(qsizetype limit) : m_limit(limit), m_left(limit) { }

    /// Takes the next line off the front of `bytes`, without its end. Absent when it has no end yet (all
    /// bytes are taken then), or exceeds the limit.
    std::optional<QByteArray> next(QByteArrayView &bytes);
    bool isExceeded() const { return m_isExceeded; }
    /// These bytes of the last line do not count.
    void giveBack(qsizetype count);

private:
    qsizetype m_limit;
    qsizetype m_left;
    QByteArray m_begun;
    bool m_isExceeded = false;
};

} // namespace nimbrelle
