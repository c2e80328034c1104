#include "Parts.h"
#include "ai/StreamReader.h"

#include <cstdlib>

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

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

} // namespace

// However it is cut, it reads the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Parts input(data, size);
    if (read(input.whole()) != read(input.parts()))
        std::abort();
    return 0;
}
