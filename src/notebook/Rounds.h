#pragma once

#include "notebook/WordEntry.h"

/// What a round is made of, in asking order.
namespace nimbrelle::Rounds {

/// At most `size` words of the learning and the mastered: the due ones, the most forgotten first, then those
/// never reviewed.
QList<QUuid> review(const QList<WordEntry> &entries, qint64 size, Timestamp now);

struct Rehearsal {
    qint64 questions = 0; ///< how many words review() would give
    qint64 learning = 0; ///< the size of the learning set then
};

/// What a round would be after the slots were filled at `now`; `newLearned` words have joined on that day.
/// Changes nothing.
Rehearsal rehearse(
    const QList<WordEntry> &entries, const AppConfig &config, qint64 newLearned, Timestamp now);

/// The words of the always-spell list that were spelled least recently.
QList<QUuid> spelling(const QList<WordEntry> &entries, qint64 size);

} // namespace nimbrelle::Rounds
