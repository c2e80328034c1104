#include "Texts.h"
#include "screen/SelectionKind.h"
#include "screen/SelectionReader.h"

#include <cstring>

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

bool hasHalfAtEnds(const QString &text)
{
    return !text.isEmpty() && (text.front().isLowSurrogate() || text.back().isHighSurrogate());
}

void checkKind(const QString &text)
{
    using Kind = SelectionKind::Kind;
    const SelectionKind kind = SelectionKind::classify(text);
    require(!text.isValidUtf16() || text.contains(kind.text));
    require((kind.kind == Kind::ignored) == trimmedSpace(kind.text).isEmpty());
    if (kind.kind != Kind::word)
        return;
    require(characterCount(kind.text) <= 60);
    require(SelectionKind::classify(kind.text).kind != Kind::passage);
}

} // namespace

/// Two bytes each for where a selection begins and how long it is, which a program may tell as it likes; the
/// rest is the text as UTF-16.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::int16_t place[2]{};
    if (size < sizeof place)
        return 0;
    std::memcpy(place, data, sizeof place);
    const std::size_t units = std::min<std::size_t>((size - sizeof place) / 2, 8000);
    QString text(static_cast<qsizetype>(units), Qt::Uninitialized);
    std::memcpy(text.data(), data + sizeof place, units * 2);

    checkKind(text);
    const auto context = SelectionReader::contextOf({.text = text, .location = place[0], .length = place[1]});
    require(!context || (!context->isEmpty() && context->size() <= text.size()));
    require(!context || !text.isValidUtf16() || !hasHalfAtEnds(*context));
    return 0;
}
