#pragma once

#include "export/GrowthReport.h"

namespace nimbrelle::bench {

/// How somebody reads and learns.
struct Reader {
    QStringList vocabulary; ///< the words to be met, in this order
    int days = 365;
    int savedDaily = 3; ///< on average
    int lookupsDaily = 6; ///< of words already saved
    int roundsDaily = 1;
};

/// The notebook and the log that such a reader has at `now`, lived through day by day by the program's own
/// rules. The same at every call.
GrowthSource sampleLife(const Reader &reader, Timestamp now);

} // namespace nimbrelle::bench
