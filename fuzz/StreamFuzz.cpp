#include "ai/StreamReader.h"

#include <cstdlib>

using namespace nimbrelle;

namespace {

struct Outcome {
    QStringList pieces;
    bool isDone = false;
    QString refusal;

    bool operator==(const Outcome &) const = default;
};

Outcome read(const QByteArrayList &parts)
{
    StreamReader reader;
    ErrorBodyReader body;
    Outcome outcome;
    bool isComplete = false;
    for (const QByteArray &part : parts) {
        outcome.pieces += reader.read(part);
        isComplete = isComplete || body.completesWith(part);
    }
    if (!isComplete)
        body.completesWith({});
    outcome.pieces += reader.finish();
    outcome.isDone = reader.isDone();
    outcome.refusal = body.text();
    return outcome;
}

// Each byte of `lengths` is the length of a part, less one; the rest is the last part.
QByteArrayList cut(QByteArrayView body, QByteArrayView lengths)
{
    QByteArrayList parts;
    for (const char length : lengths) {
        const qsizetype size = std::min<qsizetype>(static_cast<unsigned char>(length) + 1, body.size());
        if (size == 0)
            break;
        parts.append(body.first(size).toByteArray());
        body = body.sliced(size);
    }
    if (!body.isEmpty())
        parts.append(body.toByteArray());
    return parts;
}

} // namespace

// The first byte says how many lengths follow; then come these and the body. However it is cut, it reads the
// same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArrayView input(data + 1, static_cast<qsizetype>(size) - 1);
    const qsizetype lengths = std::min<qsizetype>(data[0], input.size());
    const QByteArrayView body = input.sliced(lengths);
    if (read(cut(body, {})) != read(cut(body, input.first(lengths))))
        std::abort();
    return 0;
}
