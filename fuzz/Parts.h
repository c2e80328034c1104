#pragma once

#include <QByteArrayList>

#include <algorithm>
#include <cstdint>

namespace nimbrelle::fuzz {

/// An input that comes piece by piece. Its first byte says how many lengths follow; then come these and the
/// bytes. Each length is that of a part, less one; the rest is the last part.
class Parts {
public:
    Parts(const std::uint8_t *data, std::size_t size)
    {
        const QByteArrayView input(data, static_cast<qsizetype>(size));
        if (input.isEmpty())
            return;
        const qsizetype lengths = std::min<qsizetype>(data[0], input.size() - 1);
        cut(input.sliced(1 + lengths), input.sliced(1, lengths));
    }

    const QByteArrayList &parts() const { return m_parts; }
    QByteArrayList whole() const { return {m_parts.join()}; }

private:
    void cut(QByteArrayView bytes, QByteArrayView lengths)
    {
        for (const char length : lengths) {
            const qsizetype size = std::min<qsizetype>(static_cast<unsigned char>(length) + 1, bytes.size());
            if (size == 0)
                break;
            m_parts.append(bytes.first(size).toByteArray());
            bytes = bytes.sliced(size);
        }
        if (!bytes.isEmpty())
            m_parts.append(bytes.toByteArray());
    }

    QByteArrayList m_parts;
};

} // namespace nimbrelle::fuzz
