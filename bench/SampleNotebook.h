#pragma once

#include "notebook/SyncBundle.h"

namespace nimbrelle::bench {

/// `count` words as a diligent reader collects them: two examples, four forms and a note each, a third of
/// them in learning. The same at every call.
QList<WordEntry> sampleWords(qsizetype count, Timestamp now);

} // namespace nimbrelle::bench
