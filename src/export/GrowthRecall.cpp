#include "export/GrowthHistory.h"
#include "frame/RecordCodec.h"
#include "review/FSRS.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

// What the scheduler expected of each answer, found by going through a word's history once more.
namespace nimbrelle {

namespace {

constexpr qint64 fewAnswers = 12;
constexpr double anyRetention = 0.9; // decides when a word comes due, which nothing here asks for

constexpr double never = std::numeric_limits<double>::infinity();
constexpr std::array<double, 6> bandEnds{0, 2, 7, 30, 90, never};

struct Answer {
    double stability = 0; ///< before it
    double predicted = 0;
    bool isRecalled = false;
};

/// The answers about one word since it was last saved.
struct Segment {
    QList<Answer> answers;
    std::optional<ReviewState> state;
    bool isFromSave = false;
};

void take(Segment &segment, const Activity &activity)
{
    const auto rating = caseFrom<Rating>(activity.detail);
    if (!rating)
        return;
    // On the same day the answer tells of the day, not of the memory.
    if (segment.state && daysBetween(segment.state->lastReview, activity.time) >= 1)
        segment.answers.append({.stability = segment.state->stability,
            .predicted = FSRS::retrievability(*segment.state, activity.time),
            .isRecalled = *rating != Rating::again});
    segment.state = FSRS::review(segment.state, *rating, activity.time, anyRetention);
}

class Collector {
public:
    void add(const GrowthHistory::Word &word)
    {
        Segment segment;
        for (const Activity *activity : word.events) {
            if (activity->kind == LogKind::save) {
                close(segment, nullptr);
                segment = {.isFromSave = true};
            } else if (activity->kind == LogKind::review) {
                take(segment, *activity);
            }
        }
        close(segment, word.entry);
    }

    GrowthRecall result() const
    {
        GrowthRecall recall{.untraced = m_untraced};
        for (RecallBand band : m_bands) {
            if (band.answers == 0)
                continue;
            band.predicted /= static_cast<double>(band.answers);
            setInterval(band);
            recall.answers += band.answers;
            recall.bands.append(band);
        }
        return recall;
    }

private:
    /// `entry` is what became of the word, if that is known.
    void close(const Segment &segment, const WordEntry *entry)
    {
        const qint64 known = segment.state ? segment.state->reps : 0;
        const bool isWhole = entry && entry->review ? known >= entry->review->reps : segment.isFromSave;
        if (!isWhole) {
            m_untraced += segment.answers.size();
            return;
        }
        for (const Answer &answer : segment.answers) {
            RecallBand &band = bandOf(answer.stability);
            ++band.answers;
            band.recalled += answer.isRecalled ? 1 : 0;
            band.predicted += answer.predicted;
        }
    }

    RecallBand &bandOf(double stability)
    {
        return *std::ranges::find_if(m_bands, [=](const RecallBand &band) { return stability < band.to; });
    }

    static std::array<RecallBand, bandEnds.size() - 1> emptyBands()
    {
        std::array<RecallBand, bandEnds.size() - 1> bands;
        for (std::size_t i = 0; i < bands.size(); ++i)
            bands[i] = {.from = bandEnds[i], .to = bandEnds[i + 1]};
        return bands;
    }

    /// Wilson's score interval, which stays honest for few answers and near the ends.
    static void setInterval(RecallBand &band)
    {
        constexpr double z = 1.959964;
        const double n = static_cast<double>(band.answers), share = band.observed();
        const double middle = (share + z * z / (2 * n)) / (1 + z * z / n);
        const double half = z / (1 + z * z / n) * std::sqrt(share * (1 - share) / n + z * z / (4 * n * n));
        band.low = std::max(0.0, middle - half);
        band.high = std::min(1.0, middle + half);
    }

    std::array<RecallBand, bandEnds.size() - 1> m_bands = emptyBands();
    qint64 m_untraced = 0;
};

} // namespace

RecallBand::Verdict RecallBand::verdict() const
{
    if (answers < fewAnswers)
        return Verdict::tooFew;
    if (predicted < low)
        return Verdict::better;
    return predicted > high ? Verdict::worse : Verdict::asPredicted;
}

GrowthRecall growth::recall(const GrowthHistory &history)
{
    Collector collector;
    for (const GrowthHistory::Word &word : history.words())
        collector.add(word);
    return collector.result();
}

} // namespace nimbrelle
