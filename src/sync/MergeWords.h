#pragma once

#include "notebook/WordEntry.h"
#include "sync/MergeLists.h"

namespace nimbrelle::SyncMerge {

/// One entry for each id, then one for each spelling: words saved independently on two devices become one,
/// under the id of the older. Newest first.
QList<WordEntry> mergeWords(const QList<WordEntry> &a, const QList<WordEntry> &b, const Dead &dead);

/// Two copies of one word. Which is the older, and so goes first in every rule, is told by createdAt, then by
/// id, and only then by the order of the arguments.
WordEntry mergeEntry(const WordEntry &x, const WordEntry &y, const Dead &dead);

} // namespace nimbrelle::SyncMerge
