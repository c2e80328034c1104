#pragma once

#include "notebook/SyncBundle.h"

/// Brings two notebooks together without losing anything on either side. Pure: no clock, no files.
namespace nimbrelle::SyncMerge {

/// Every field has its rule, every list a total order and every tie a tie-break, so that devices arrive at
/// the same document whichever merges first, and however often. Where the copies of one id tie, some list
/// orders follow the order of the arguments. Deletion always wins over change.
SyncBundle merge(const SyncBundle &a, const SyncBundle &b);

} // namespace nimbrelle::SyncMerge
