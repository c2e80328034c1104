#include "frame/RecordCodec.h"
#include "notebook/LearningLog.h"
#include "notebook/SyncBundle.h"

#include <cstdlib>

using namespace nimbrelle;

namespace {

// What was read must come back the same from what is written of it, in each form of text.
template <class T> void roundTrip(QByteArrayView json)
{
    const auto value = decode<T>(json);
    if (!value)
        return;
    for (const TextForm form : {TextForm::file, TextForm::canonical, TextForm::line}) {
        const auto text = encode(*value, form);
        if (!text || decode<T>(*text) != value)
            std::abort();
    }
}

} // namespace

/// The first byte chooses the file, the rest is its content.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArrayView json(data + 1, static_cast<qsizetype>(size - 1));
    switch (data[0] % 8) {
    case 0:
        roundTrip<QList<WordEntry>>(json);
        break;
    case 1:
        roundTrip<QList<AINote>>(json);
        break;
    case 2:
        roundTrip<QList<GrammarEncounter>>(json);
        break;
    case 3:
        roundTrip<QList<AffixEncounter>>(json);
        break;
    case 4:
        roundTrip<QList<Tombstone>>(json);
        break;
    case 5:
        roundTrip<ReviewStats>(json);
        break;
    case 6:
        roundTrip<LearningLog::Event>(json);
        break;
    default:
        roundTrip<SyncBundle>(json);
        break;
    }
    return 0;
}
