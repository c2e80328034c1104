#pragma once

#include "notebook/Records.h"

#include <QList>
#include <QStringList>

namespace nimbrelle {

/// So many met out of all.
struct Progress {
    qint64 met = 0;
    qint64 all = 0;

    bool operator==(const Progress &) const = default;
};

/// The small reward of a lookup or a save: what was met for the first time. Never stored.
struct Unlock {
    std::optional<FormRecord> newForm;
    std::optional<Progress> formProgress;
    std::optional<GrammarPoint> newGrammar;
    std::optional<Progress> grammarProgress;
    QList<Affix> newAffixes;
    std::optional<Progress> affixProgress;
    QStringList familyMembers; ///< headwords of a new word's relatives in the notebook
    std::optional<qint64> awakenedAfterDays; ///< the word was dormant and has come back

    /// Nothing to show; the progress figures only accompany the rest.
    bool isEmpty() const
    {
        return !newForm && !newGrammar && newAffixes.isEmpty() && familyMembers.isEmpty()
            && !awakenedAfterDays;
    }

    bool operator==(const Unlock &) const = default;
};

} // namespace nimbrelle
