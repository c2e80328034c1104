#pragma once

#include "notebook/WordEntry.h"

/// Which words take the bounded places of the learning set. Pure, so that a round can also be rehearsed
/// without touching the notebook.
namespace nimbrelle {

namespace SlotTrim {

/// The learning words to hand back when there are `over` too many: those with the least invested in them
/// first. The same on all devices, whatever the order of `words`.
QList<QUuid> pick(const QList<WordEntry> &words, qint64 over);

} // namespace SlotTrim

/// Positions in the list that was planned for.
struct SlotPlan {
    QList<qsizetype> waking; ///< resting words whose rest is over
    QList<qsizetype> leaving; ///< learning words beyond the limit
    QList<qsizetype> joining; ///< in the order in which they join

    bool operator==(const SlotPlan &) const = default;
};

/// `newLearned` words have joined today; `extra` of 1 or more replaces what is left of the daily allowance.
SlotPlan planSlots(
    const QList<WordEntry> &entries, const AppConfig &config, qint64 newLearned, qint64 extra, Timestamp now);

/// The same for those who plan many days: the reading of day keys is handed in, as to priorityOf.
SlotPlan planSlots(const QList<WordEntry> &entries, const AppConfig &config, qint64 newLearned, qint64 extra,
    Timestamp now, const MidnightOf &midnightOf);

} // namespace nimbrelle
