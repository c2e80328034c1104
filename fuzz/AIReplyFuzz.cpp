#include "ai/Contracts.h"
#include "frame/RecordCodec.h"

#include <cstdlib>

using namespace nimbrelle;

namespace {

// A reply that reads well can be used: its accessors stand whatever the AI wrote.
void use(const Explanation &explanation)
{
    if (explanation.allForms().size() > static_cast<qsizetype>(caseCount<FormKind>))
        std::abort();
    if (explanation.affixList().size() > explanation.affixes.value_or(QStringList()).size())
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const auto explanation = decode<Explanation>(bytes, KeyStyle::fromSnakeCase);
    const auto result = decode<LookupResult>(bytes, KeyStyle::fromSnakeCase);
    decode<Translation>(bytes, KeyStyle::fromSnakeCase);
    decode<MnemonicTip>(bytes, KeyStyle::fromSnakeCase);
    if (explanation)
        use(*explanation);
    if (result && (!explanation || result->explanation != *explanation))
        std::abort();
    return 0;
}
