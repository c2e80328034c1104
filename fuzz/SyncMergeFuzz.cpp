#include "frame/RecordCodec.h"
#include "sync/BundleForm.h"
#include "sync/MergeLists.h"
#include "sync/SyncMerge.h"

#include <cstdlib>

using namespace nimbrelle;

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

void checkDead(const SyncBundle &merged)
{
    SyncMerge::Dead dead;
    for (const Tombstone &tombstone : merged.deleted) {
        const QUuid id = QUuid::fromString(tombstone.id);
        if (idText(id) == tombstone.id)
            dead.insert(id);
    }
    for (const WordEntry &word : merged.words) {
        check(!dead.contains(word.id));
        for (const Example &example : word.examples)
            check(!dead.contains(example.id));
    }
    for (const GrammarEncounter &encounter : merged.grammar)
        check(!dead.contains(encounter.id));
}

} // namespace

/// Two bundles, parted by the first zero byte. Any two that can be read at all can be merged, and what comes
/// out can be sent and read again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype gap = bytes.indexOf('\0');
    if (gap < 0)
        return 0;
    const auto a = decode<SyncBundle>(bytes.left(gap)), b = decode<SyncBundle>(bytes.mid(gap + 1));
    if (!a || !b)
        return 0;
    for (const auto &[first, second] : {std::pair(*a, *b), std::pair(*b, *a)}) {
        const SyncBundle merged = SyncMerge::merge(first, second);
        check(BundleForm::normalized(merged) == merged && !BundleForm::json(merged).isEmpty());
        checkDead(merged);
    }
    return 0;
}
