#include "Texts.h"
#include "export/BackupMerge.h"
#include "frame/Failure.h"
#include "sync/BundleForm.h"

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

/// Any bytes are a backup or fail with a sentence. What can be read can be merged, and what comes of that can
/// be written.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    try {
        const auto backup =
            Backup::parse({reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)});
        const BackupMerge merge = mergeOf({}, backup);
        require(!merge.plan.lines().isEmpty());
        require(!BundleForm::json(merge.merged).isEmpty());
    } catch (const Failure &failure) {
        require(!failure.text().isEmpty());
    }
    return 0;
}
