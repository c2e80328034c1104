#pragma once

#include "coach/CoachFacts.h"
#include "support/Notebook.h"
#include "support/TimeZone.h"

namespace nimbrelle {

inline Timestamp utc(const char *iso)
{
    return *timestampFromIso(std::string_view{iso});
}

/// A learner in Shanghai on a Saturday evening, with a word of every kind and a log that a merge left out of
/// order, broken lines and unknown kinds included.
struct SampleLearner : Notebook {
    /// What the coach is told of them.
    static QString expectedFacts();
    static QString expectedReview();

    TimeZone zone{"Asia/Shanghai"};
    const Timestamp now = utc("2026-03-14T13:30:00Z");
    WordStore words{prepared(), clock, config, log};
    const CoachFacts facts{words, config, log};

private:
    const AppPaths &prepared();
};

} // namespace nimbrelle
