#include "export/History.h"
#include "review/FSRS.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// "met kept settled" of each month, the oldest first.
QStringList monthsOf(const GrowthReport &report)
{
    QStringList rows;
    for (const GrowthMonth &month : report.growth.months)
        rows.append(u"%1 %2 %3"_s.arg(month.met).arg(month.kept).arg(month.settled));
    return rows;
}

/// "learning resting mastered" at the end of each month, "-" where nothing is known.
QStringList stagesOf(const GrowthReport &report)
{
    QStringList rows;
    for (const GrowthMonth &month : report.growth.months)
        rows.append(month.stages ? u"%1 %2 %3"_s.arg(month.stages->learning)
                                       .arg(month.stages->resting)
                                       .arg(month.stages->mastered)
                                 : u"-"_s);
    return rows;
}

TEST(GrowthMonths, BeginAtMidnightOfTheZone)
{
    History history;
    history.add("late", "2026-02-28T16:30:00Z");
    history.log("2026-02-28T16:30:00Z", "save", "late");
    history.log("2026-02-28T15:59:59Z", "lookup", "gone");
    EXPECT_THAT(monthsOf(history.at("2026-03-05T00:00:00Z")), ElementsAre(u"1 0 0"_s, u"1 1 0"_s));
    history.zone = QTimeZone("America/New_York");
    EXPECT_THAT(monthsOf(history.at("2026-03-05T00:00:00Z")), ElementsAre(u"2 1 0"_s, u"0 0 0"_s));
}

TEST(GrowthMonths, CountAWordOnceAndKeepWhatWasDeleted)
{
    History history;
    WordEntry &kept = history.add("Kept", "2026-01-10T00:00:00Z");
    kept.encounterDays = QStringList{u"2026-01-10"_s, u"2026-02-03"_s, u"2099-01-01"_s, u"rubbish"_s};
    history.add("older than the log", "2026-01-02T00:00:00Z");
    history.log("2026-01-10T00:00:00Z", "save", "Kept");
    history.log("2026-01-11T00:00:00Z", "lookup", "kept ");
    history.log("2026-01-12T00:00:00Z", "save", "deleted");
    history.log("2026-01-20T00:00:00Z", "graduate", "deleted");
    history.log("2026-02-12T00:00:00Z", "save", "deleted");
    history.log("2026-02-13T00:00:00Z", "graduate", "deleted");
    history.log("2026-02-14T00:00:00Z", "glance", "Kept");
    const GrowthReport report = history.at("2026-03-01T00:00:00Z");
    EXPECT_THAT(monthsOf(report), ElementsAre(u"3 3 1"_s, u"2 0 0"_s, u"0 0 0"_s));
    EXPECT_EQ(report.gone, 1);
    EXPECT_EQ(report.words, 2);
    EXPECT_EQ(report.since, day(2026, 1, 2));
}

TEST(GrowthMonths, BearAClockThatWasWrong)
{
    History history;
    history.add("word", "2026-01-10T00:00:00Z");
    history.log("2031-01-01T00:00:00Z", "save", "word");
    history.log("1970-01-02T00:00:00Z", "lookup", "word");
    history.log("2026-01-11T00:00:00Z", "lookup", "word");
    const GrowthReport report = history.at("2026-02-10T00:00:00Z");
    EXPECT_EQ(report.aheadOfTime, 1);
    ASSERT_EQ(report.growth.months.size(), 24) << "and not one for each month since 1970";
    EXPECT_EQ(report.growth.months.last().month, std::chrono::year{2026} / 2);
    EXPECT_EQ(report.growth.months[22].met, 1);
    ASSERT_TRUE(report.growth.earlier);
    EXPECT_EQ(report.growth.earlier->month, std::chrono::year{1970} / 1);
    EXPECT_EQ(report.growth.earlier->met, 1);

    history.words.first().createdAt = utc("2031-01-01T00:00:00Z");
    EXPECT_EQ(history.at("2026-02-10T00:00:00Z").growth.months.last().kept, 1);
}

TEST(GrowthStages, AreRetracedWordByWord)
{
    History history;
    history.add("known", "2025-12-01T00:00:00Z", Stage::mastered);
    history.add("tired", "2026-01-01T00:00:00Z", Stage::seen);
    history.add("back", "2026-01-01T00:00:00Z", Stage::learning);
    history.log("2026-01-05T00:00:00Z", "save", "known");
    history.log("2026-01-06T00:00:00Z", "join", "known");
    history.log("2026-03-31T15:59:59Z", "graduate", "known"); // the last second of March
    history.log("2026-01-06T00:00:00Z", "join", "tired");
    history.log("2026-02-25T00:00:00Z", "rest", "tired"); // over in March
    history.log("2026-02-01T00:00:00Z", "leave", "back"); // a merge left it out of order
    history.log("2026-01-06T00:00:00Z", "join", "back");
    history.log("2026-04-02T00:00:00Z", "join", "back", "manual");
    history.log("2026-01-06T00:00:00Z", "join", "deleted");
    const GrowthReport report = history.at("2026-04-20T00:00:00Z");
    EXPECT_THAT(stagesOf(report), ElementsAre(u"-"_s, u"3 0 0"_s, u"1 1 0"_s, u"0 0 1"_s, u"1 0 1"_s));
    EXPECT_EQ(report.growth.untraced, 0);
    EXPECT_EQ(report.growth.undatedSettled, 0);
}

TEST(GrowthStages, ClaimNothingThatTheLogDoesNotHold)
{
    History history;
    history.add("unlogged", "2026-01-01T00:00:00Z", Stage::mastered);
    history.add("clock set back", "2026-01-01T00:00:00Z", Stage::mastered);
    history.log("2026-02-01T00:00:00Z", "join", "clock set back");
    history.log("2026-01-15T00:00:00Z", "graduate", "clock set back");
    const GrowthReport report = history.at("2026-03-01T00:00:00Z");
    EXPECT_THAT(stagesOf(report), ElementsAre(u"0 0 0"_s, u"0 0 0"_s, u"0 0 2"_s));
    EXPECT_EQ(report.growth.untraced, 2);
    EXPECT_EQ(report.growth.undatedSettled, 1);
}

/// Reviews of one word at these moments, as the log has them.
void review(
    History &history, const char *word, std::initializer_list<std::pair<const char *, const char *>> answers)
{
    for (const auto &[time, rating] : answers)
        history.log(time, "review", word, rating);
}

TEST(GrowthRecall, ComparesWhatWasExpectedWithWhatWasRecalled)
{
    History history;
    history.add("word", "2026-01-01T00:00:00Z").review = ReviewState{.reps = 4};
    history.log("2026-01-01T00:00:00Z", "save", "word");
    review(history, "word",
        {{"2026-01-02T00:00:00Z", "good"}, {"2026-01-04T00:00:00Z", "hard"}, {"2026-01-04T01:00:00Z", "good"},
            {"2026-01-20T00:00:00Z", "again"}});
    const auto answered = [](std::optional<ReviewState> state, Rating rating, const char *time) {
        return FSRS::review(state, rating, utc(time), 0.9);
    };
    const ReviewState first = answered({}, Rating::good, "2026-01-02T00:00:00Z");
    const ReviewState second = answered(first, Rating::hard, "2026-01-04T00:00:00Z");
    const ReviewState third = answered(second, Rating::good, "2026-01-04T01:00:00Z");
    ASSERT_LT(third.stability, 7);

    const GrowthRecall recall = history.at("2026-02-01T00:00:00Z").recall;
    ASSERT_EQ(recall.bands.size(), 1);
    EXPECT_EQ(recall.bands[0].from, 2);
    EXPECT_EQ(recall.bands[0].to, 7);
    EXPECT_EQ(recall.bands[0].answers, 2) << "an hour later says nothing of the memory";
    EXPECT_EQ(recall.bands[0].recalled, 1);
    EXPECT_DOUBLE_EQ(recall.bands[0].predicted,
        (FSRS::retrievability(first, utc("2026-01-04T00:00:00Z"))
            + FSRS::retrievability(third, utc("2026-01-20T00:00:00Z")))
            / 2);
    EXPECT_EQ(recall.bands[0].verdict(), RecallBand::Verdict::tooFew);
}

TEST(GrowthRecall, LeavesOutWhatItDoesNotKnowFromTheBeginning)
{
    const auto answers = {std::pair{"2026-01-02T00:00:00Z", "good"}, {"2026-01-04T00:00:00Z", "good"}};
    History history;
    history.add("log lost", "2025-01-01T00:00:00Z").review = ReviewState{.reps = 9};
    review(history, "log lost", answers);
    review(history, "deleted, and saved before the log", answers);
    EXPECT_EQ(history.at("2026-02-01T00:00:00Z").recall.answers, 0);
    EXPECT_EQ(history.at("2026-02-01T00:00:00Z").recall.untraced, 2);

    history.log("2026-01-01T00:00:00Z", "save", "deleted");
    review(history, "deleted", answers);
    history.log("2026-01-05T00:00:00Z", "save", "deleted"); // begins anew
    history.log("2026-01-15T00:00:00Z", "recall", "deleted", "good");
    review(history, "deleted", {{"2026-01-16T00:00:00Z", "odd"}});
    history.add("reviewed on two devices", "2025-01-01T00:00:00Z").review = ReviewState{.reps = 1};
    review(history, "reviewed on two devices", answers);
    EXPECT_EQ(history.at("2026-02-01T00:00:00Z").recall.answers, 2);
    EXPECT_EQ(history.at("2026-02-01T00:00:00Z").recall.untraced, 2);
}

TEST(GrowthRecall, SaysHowSureItIs)
{
    History history;
    for (const char *name : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"}) {
        history.log("2026-01-01T00:00:00Z", "save", name);
        review(history, name,
            {{"2026-01-02T00:00:00Z", "good"}, {"2026-01-04T00:00:00Z", *name == 'a' ? "again" : "good"}});
    }
    const RecallBand band = history.at("2026-02-01T00:00:00Z").recall.bands.first();
    EXPECT_NEAR(band.low, 0.6461, 1e-4);
    EXPECT_NEAR(band.high, 0.9851, 1e-4);
    EXPECT_EQ(band.verdict(), RecallBand::Verdict::asPredicted);
    EXPECT_EQ((RecallBand{.answers = 12, .predicted = 0.6, .low = 0.65, .high = 0.98}).verdict(),
        RecallBand::Verdict::better);
    EXPECT_EQ((RecallBand{.answers = 12, .predicted = 0.99, .low = 0.65, .high = 0.98}).verdict(),
        RecallBand::Verdict::worse);
}

/// "due fresh" of the first days.
QStringList firstDays(const GrowthLoad &load, qsizetype count)
{
    QStringList days;
    for (const GrowthLoad::Day &one : load.days.mid(0, count))
        days.append(u"%1 %2"_s.arg(one.due).arg(one.fresh));
    return days;
}

TEST(GrowthLoad, PlaysTheComingDaysByTheRulesOfTheRounds)
{
    History history;
    const auto due = [](const char *when) {
        return ReviewState{.stability = 20,
            .difficulty = 5,
            .due = utc(when),
            .lastReview = utc("2026-02-20T00:00:00Z"),
            .reps = 3};
    };
    history.add("waiting", "2026-01-01T00:00:00Z", Stage::mastered).review = due("2026-02-27T00:00:00Z");
    history.add("tonight", "2026-01-01T00:00:00Z", Stage::learning).review = due("2026-03-01T15:59:59Z");
    history.add("after midnight", "2026-01-01T00:00:00Z", Stage::learning).review =
        due("2026-03-01T16:00:00Z");
    history.add("set aside", "2026-01-01T00:00:00Z", Stage::seen).review = due("2026-03-01T00:00:00Z");
    WordEntry &resting = history.add("resting", "2026-01-01T00:00:00Z", Stage::resting);
    resting.restUntil = utc("2026-03-03T00:00:00Z");
    resting.lastLookupAt = utc("2026-02-28T00:00:00Z");
    history.add("slang", "2026-01-01T00:00:00Z").wantToLearn = true;
    history.config.learningSlots = 2;
    history.config.graduateDays = 365;
    GrowthLoad load = history.at("2026-03-01T04:00:00Z").load;
    EXPECT_THAT(firstDays(load, 2), ElementsAre(u"2 0"_s, u"1 0"_s)) << "no place is free";
    EXPECT_EQ(load.waiting, 1);
    EXPECT_EQ(load.days.size(), 28);
    EXPECT_EQ(load.days.first().day, day(2026, 3, 1));
    EXPECT_EQ(load.days.last().day, day(2026, 3, 28));

    history.config.graduateDays = 30;
    EXPECT_THAT(firstDays(history.at("2026-03-01T04:00:00Z").load, 2), ElementsAre(u"2 0"_s, u"1 1"_s))
        << "who graduates today leaves a place";

    history.config.graduateDays = 365;
    history.config.learningSlots = 30;
    history.config.dailyNewLimit = 1;
    history.newLearned = 1; // today's allowance is used up
    load = history.at("2026-03-01T04:00:00Z").load;
    EXPECT_THAT(firstDays(load, 4), ElementsAre(u"2 0"_s, u"1 1"_s, u"0 1"_s, u"1 0"_s))
        << "the wanted word first, then the rested one; an answer comes back";
}

TEST(GrowthMemories, AreOfTheDaysRoundThatOfAYearAgo)
{
    const auto met = [](const char *sentence, const char *at) {
        return exampleOf(QString::fromUtf8(sentence), Origin::met, utc(at));
    };
    History history;
    WordEntry &word = history.add("run", "2026-01-01T00:00:00Z");
    word.meaningZh = u"跑"_s;
    word.forms = QList<FormRecord>{
        {.kind = FormKind::past, .form = u"ran"_s, .firstSeenAt = {}, .count = 1, .sentence = {}}};
    word.examples = {met("They ran home; we ran too.", "2027-02-28T02:00:00Z"),
        met("Too early to run.", "2027-02-20T15:59:59Z"), met("Nothing marked.", "2027-03-07T15:00:00Z"),
        met("Too late to run.", "2027-03-07T16:00:00Z"),
        exampleOf(u"By the AI."_s, Origin::generated, utc("2027-02-28T00:00:00Z"))};
    word.examples[0].sourceURL = u"https://www.example.org/a"_s;
    history.sentenceNotes = {{.id = {},
        .question = {},
        .answer = {},
        .original = u"A note."_s,
        .translation = u"一句。"_s,
        .sourceApp = {},
        .sourceURL = {},
        .sourceTitle = {},
        .addedAt = utc("2027-02-27T00:00:00Z")}};
    const GrowthMemories memories = history.at("2028-02-29T04:00:00Z").memories;
    ASSERT_EQ(memories.sentences.size(), 3);
    EXPECT_EQ(memories.sentences[0].translation, u"一句。"_s);
    EXPECT_EQ(memories.sentences[1].day, day(2027, 2, 28));
    EXPECT_THAT(memories.sentences[1].sentence,
        ElementsAre(MarkedPiece{u"They "_s}, MarkedPiece{u"ran"_s, true}, MarkedPiece{u" home; we "_s},
            MarkedPiece{u"ran"_s, true}, MarkedPiece{u" too."_s}));
    EXPECT_EQ(memories.sentences[1].place, u"example.org"_s);
    EXPECT_EQ(memories.sentences[1].meaning, u"跑"_s);
    EXPECT_THAT(memories.sentences[2].sentence, ElementsAre(MarkedPiece{u"Nothing marked."_s}));
    EXPECT_EQ(memories.firstOn, std::nullopt);
    EXPECT_EQ(history.at("2027-06-01T00:00:00Z").memories.firstOn, day(2028, 2, 20));
}

TEST(GrowthCollection, HoldsWhatWasMetAndWhere)
{
    History history;
    WordEntry &word = history.add("unhappy", "2026-01-01T00:00:00Z");
    word.inflections = QMap<QString, QString>{{u"base"_s, u"unhappy"_s}, {u"comparative"_s, u"unhappier"_s}};
    word.forms = QList<FormRecord>{
        {.kind = FormKind::base, .form = u"unhappy"_s, .firstSeenAt = {}, .count = 3, .sentence = {}}};
    word.sourceKeys = QStringList{u"reddit.com"_s, u"常拼"_s};
    history.log("2026-01-01T00:00:00Z", "save", "unhappy", "reddit.com");
    history.log("2026-01-02T00:00:00Z", "lookup", "unhappy", "mpv");
    history.log("2026-01-02T00:00:00Z", "save", "deleted", "reddit.com");
    history.log("2026-01-02T00:00:00Z", "review", "unhappy", "good");
    for (const char *headword : {"unkind", "Unhappy", "unhappy"}) // the newest first
        history.affixes.append({.id = {},
            .affix = Affix::un,
            .headword = QString::fromUtf8(headword),
            .root = {},
            .sentence = {},
            .addedAt = {}});
    const GrowthReport report = history.at("2026-02-01T00:00:00Z");
    EXPECT_EQ(report.collection.formsKnown, 2);
    EXPECT_EQ(report.collection.formsMet, 1);
    ASSERT_EQ(report.collection.affixes.size(), 1);
    EXPECT_THAT(report.collection.affixes[0].words, ElementsAre(u"unhappy"_s, u"unkind"_s));
    ASSERT_EQ(report.sources.places.size(), 2);
    EXPECT_EQ(report.sources.places[0].name, u"reddit.com"_s);
    EXPECT_EQ(report.sources.places[0].words, 2);
    EXPECT_EQ(report.sources.places[1].name, u"mpv"_s);
}

} // namespace
