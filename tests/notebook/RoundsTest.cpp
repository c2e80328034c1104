#include "notebook/Rounds.h"

#include "support/Printers.h"
#include "support/Words.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-15T12:00:00Z"});

WordEntry fresh(const QString &headword, std::optional<Stage> stage)
{
    return {.id = QUuid::createUuid(), .headword = headword, .createdAt = now, .stage = stage};
}

WordEntry reviewed(const QString &headword, Stage stage, std::chrono::seconds dueIn, double stability = 3)
{
    WordEntry word = fresh(headword, stage);
    word.review = ReviewState{stability, 5, now + dueIn, now - 72h, 1, 0, 1};
    return word;
}

WordEntry spelled(const QString &headword, std::optional<Timestamp> at)
{
    return {.id = QUuid::createUuid(), .headword = headword, .spellPractice = true, .lastSpelledAt = at};
}

QString headwords(const QList<WordEntry> &words, const QList<QUuid> &ids)
{
    QStringList texts;
    for (const QUuid &id : ids)
        texts.append(std::ranges::find(words, id, &WordEntry::id)->headword);
    return texts.join(u' ');
}

TEST(Rounds, AskTheMostForgottenFirstAndThenNewWords)
{
    const QList<WordEntry> words{fresh(u"new1"_s, Stage::learning),
        reviewed(u"firm"_s, Stage::mastered, -1s, 90), reviewed(u"resting"_s, Stage::resting, -1h),
        reviewed(u"now"_s, Stage::learning, 0s, 2), reviewed(u"later"_s, Stage::learning, 1s),
        reviewed(u"weak1"_s, Stage::learning, -1h, 1), fresh(u"odd"_s, Stage::mastered),
        reviewed(u"weak2"_s, Stage::learning, -1h, 1), fresh(u"seen"_s, {}),
        fresh(u"new2"_s, Stage::learning), reviewed(u"damaged"_s, Stage::mastered, -1s, -0.1)};
    const auto round = [&](qint64 size) { return headwords(words, Rounds::review(words, size, now)); };
    EXPECT_EQ(round(15), u"damaged weak1 weak2 now firm new1 new2"_s);
    EXPECT_EQ(round(3), u"damaged weak1 weak2"_s);
    EXPECT_EQ(round(-1), QString());
}

TEST(Rounds, ArePlannedAsIfTheSlotsWereFilled)
{
    WordEntry rested = reviewed(u"rested"_s, Stage::resting, -1h);
    rested.restUntil = now;
    const QList<WordEntry> words{fresh(u"new1"_s, {}), fresh(u"new2"_s, {}), rested,
        reviewed(u"leaving1"_s, Stage::learning, -1h), reviewed(u"leaving2"_s, Stage::learning, -1h),
        reviewed(u"kept"_s, Stage::learning, -1h, 9), reviewed(u"kept2"_s, Stage::mastered, -1h)};
    const auto sizes = [&](qint64 slotCount, qint64 newLearned) {
        const auto round = Rounds::rehearse(
            words, configWith({.learningSlots = slotCount, .dailyNewLimit = 2}), newLearned, now);
        return QList<qint64>{round.questions, round.learning};
    };
    EXPECT_EQ(sizes(2, 0), QList<qint64>({3, 2})) << "one of three has to leave";
    EXPECT_EQ(sizes(9, 0), QList<qint64>({6, 5}));
    EXPECT_EQ(sizes(9, 2), QList<qint64>({4, 3})) << "the allowance is used up";
}

TEST(Rounds, OfSpellingTakeTheLeastRecentlySpelled)
{
    const QList<WordEntry> words{spelled(u"late"_s, now), spelled(u"never1"_s, {}),
        fresh(u"other"_s, Stage::learning), spelled(u"early"_s, now - 1h), spelled(u"never2"_s, {}),
        spelled(u"early2"_s, now - 1h)};
    const auto round = [&](qint64 size) { return headwords(words, Rounds::spelling(words, size)); };
    EXPECT_EQ(round(10), u"never1 never2 early early2 late"_s);
    EXPECT_EQ(round(3), u"never1 never2 early"_s);
    EXPECT_EQ(round(-1), QString());
}

} // namespace
