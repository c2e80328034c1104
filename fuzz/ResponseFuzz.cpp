#include "Parts.h"
#include "Texts.h"
#include "http/ResponseReader.h"

#include <tuple>

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

using Outcome = std::tuple<int, QByteArray, QByteArray, bool, std::optional<ResponseFault>>;

Outcome outcomeOf(const ResponseReader &reader, const QByteArray &body)
{
    return {reader.status(), reader.header("etag"), body, reader.isComplete(), reader.fault()};
}

// Before the connection is closed, and after it.
std::pair<Outcome, Outcome> read(const QByteArrayList &parts)
{
    ResponseReader reader;
    QByteArray body;
    for (const QByteArray &part : parts)
        body += reader.read(part);
    const Outcome open = outcomeOf(reader, body);
    reader.end();
    require(reader.isComplete() || reader.fault());
    return {open, outcomeOf(reader, body)};
}

} // namespace

// However it is cut, it reads the same, and it has no more body than bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Parts input(data, size);
    const auto outcome = read(input.parts());
    require(outcome == read(input.whole()));
    require(static_cast<std::size_t>(std::get<2>(outcome.first).size()) <= size);
    return 0;
}
