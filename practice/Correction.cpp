#include "practice/Correction.h"

#include <algorithm>
#include <numeric>

namespace nimbrelle::practice {

namespace {

/// How many letters are wrong, missing or too many; two neighbours in each other's place count once.
size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<size_t> beforeLast(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (size_t i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t substitution = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, substitution});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row.back();
}

/// How many slips are forgiven. Names are typed wrong oftenest and seldom collide with a word.
size_t toleranceFor(size_t length, const Value &entry)
{
    if (length < (textAt(entry, "pos") == "name" ? 5u : 6u))
        return 0;
    return length < 9 ? 1 : 2;
}

} // namespace

const Value *correctionOf(const Lexicon &lexicon, std::string_view typed)
{
    const std::string key = keyOf(typed);
    if (key.empty() || lexicon.isCommon(key))
        return nullptr;
    const Value *best = nullptr;
    size_t bestDistance = 3;
    for (const auto &[form, readings] : lexicon.forms()) {
        const size_t longer = std::max(form.size(), key.size());
        const size_t shorter = std::min(form.size(), key.size());
        if (form.front() != key.front() || longer - shorter >= bestDistance)
            continue;
        const Value *entry = readings.front().entry;
        const size_t distance = editDistance(key, form);
        if (distance < bestDistance && distance <= toleranceFor(key.size(), *entry)) {
            best = entry;
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace nimbrelle::practice
