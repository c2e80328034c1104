#include "review/LetterSlots.h"

#include "review/Letters.h"

#include <algorithm>

namespace nimbrelle {

QList<LetterSlots::Box> LetterSlots::boxes() const
{
    const QStringList wanted = characters(answer), given = characters(typed);
    QList<Box> result;
    for (qsizetype i = 0; i < std::max(wanted.size(), given.size()); ++i) {
        if (i < given.size()) {
            const bool isRight = i < wanted.size() && Letters::isSame(given[i], wanted[i]);
            result.append({given[i], isRight ? Role::right : Role::wrong});
        } else {
            const bool isBlank = wanted[i] == Letters::blank;
            result.append({isBlank ? Letters::blank : Letters::gap, Role::open});
        }
    }
    return result;
}

QList<QList<LetterSlots::Box>> LetterSlots::rows(qsizetype widest) const
{
    const QList<Box> all = boxes();
    const QStringList wanted = characters(answer);
    QList<QList<Box>> result;
    qsizetype start = 0;
    while (all.size() - start > widest) {
        const qsizetype blank = wanted.mid(start, widest).lastIndexOf(Letters::blank);
        const qsizetype count = blank > 0 ? blank + 1 : widest;
        result.append(all.mid(start, count));
        start += count;
    }
    result.append(all.mid(start));
    return result;
}

} // namespace nimbrelle
