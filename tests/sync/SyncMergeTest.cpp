#include "sync/SyncMerge.h"

#include "support/Printers.h"
#include "sync/BundleForm.h"

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

Timestamp at(int seconds)
{
    return Timestamp{} + std::chrono::seconds{1'790'000'000 + seconds};
}

QUuid id(uint number)
{
    return {number, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
}

WordEntry word(uint number, QStringView headword, int createdAt)
{
    WordEntry entry;
    entry.id = id(number);
    entry.headword = headword.toString();
    entry.createdAt = at(createdAt);
    return entry;
}

SyncBundle holding(const WordEntry &entry)
{
    SyncBundle bundle;
    bundle.words = {entry};
    return bundle;
}

/// What two copies of one word become.
WordEntry merged(const WordEntry &x, const WordEntry &y)
{
    return SyncMerge::merge(holding(x), holding(y)).words.value(0);
}

template <class Edit> WordEntry copyOfWord(Edit edit)
{
    WordEntry entry = word(1, u"run", 0);
    edit(entry);
    return entry;
}

TEST(SyncMerge, OfNothingIsTheEmptyBundle)
{
    SyncBundle other;
    other.format = 7;
    EXPECT_EQ(SyncMerge::merge({}, other), SyncBundle{});
}

// Either argument order must give `winner`'s group; the loser's must not leak in.
void expectLearningState(const WordEntry &winner, const WordEntry &loser)
{
    for (const WordEntry &entry : {merged(winner, loser), merged(loser, winner)}) {
        EXPECT_EQ(entry.stage, winner.stage);
        EXPECT_EQ(entry.restUntil, winner.restUntil);
        EXPECT_EQ(entry.wantToLearn, winner.wantToLearn);
        EXPECT_EQ(entry.spellPractice, winner.spellPractice);
        EXPECT_EQ(entry.stateAt, winner.stateAt);
    }
}

TEST(SyncMerge, LearningStateMovesAsOneGroup)
{
    const auto state = [](std::optional<Stage> stage, std::optional<int> stateAt) {
        return copyOfWord([&](WordEntry &entry) {
            entry.stage = stage;
            if (stage == Stage::resting)
                entry.restUntil = at(1000);
            if (stateAt)
                entry.stateAt = at(*stateAt);
        });
    };
    WordEntry marked = state(Stage::seen, 5);
    marked.wantToLearn = true;
    marked.spellPractice = true;
    expectLearningState(state(Stage::seen, 6), marked);
    expectLearningState(marked, state(Stage::mastered, 4));
    expectLearningState(marked, state(Stage::mastered, std::nullopt));
    expectLearningState(state(Stage::mastered, 5), state(Stage::learning, 5));
    expectLearningState(state(Stage::learning, 5), state(Stage::resting, 5));
    expectLearningState(state(Stage::resting, 5), marked);
    expectLearningState(state(Stage::resting, std::nullopt), state(std::nullopt, std::nullopt));
}

TEST(SyncMerge, ReviewStateAndSpellingEachHaveTheirOwnWinner)
{
    const auto reviewed = [](double stability, int last, qint64 reps) {
        return copyOfWord([&](WordEntry &entry) {
            entry.review = ReviewState{stability, 5, at(last), at(last), reps, 0, 0};
        });
    };
    const auto spelled = [](std::optional<qint64> level, std::optional<int> last) {
        return copyOfWord([&](WordEntry &entry) {
            entry.spellLevel = level;
            if (last)
                entry.lastSpelledAt = at(*last);
        });
    };
    EXPECT_EQ(merged(reviewed(1, 6, 1), reviewed(9, 5, 9)).review->stability, 1);
    EXPECT_EQ(merged(reviewed(1, 5, 3), reviewed(9, 5, 9)).review->stability, 9);
    EXPECT_EQ(merged(reviewed(1, 5, 3), reviewed(9, 5, 3)).review->stability, 1);
    EXPECT_EQ(merged(word(1, u"run", 0), reviewed(9, 5, 3)).review->stability, 9);

    EXPECT_EQ(merged(spelled(1, 6), spelled(4, 5)).spellLevel, 1);
    EXPECT_EQ(merged(spelled(4, 5), spelled(std::nullopt, 6)).spellLevel, std::nullopt);
    EXPECT_EQ(merged(spelled(1, 5), spelled(4, 5)).spellLevel, 4);
    EXPECT_EQ(merged(spelled(std::nullopt, std::nullopt), spelled(0, std::nullopt)).spellLevel, 0);

    WordEntry mixed = reviewed(9, 9, 9);
    mixed.stage = Stage::resting;
    mixed.stateAt = at(1);
    WordEntry other = spelled(3, 3);
    other.stage = Stage::learning;
    other.stateAt = at(2);
    const WordEntry result = merged(mixed, other);
    EXPECT_EQ(result.review, mixed.review);
    EXPECT_EQ(result.stage, Stage::learning);
    EXPECT_EQ(result.spellLevel, 3);
}

TEST(SyncMerge, TheOlderWordGoesFirstInEveryField)
{
    WordEntry older = word(9, u"Apple", 0), newer = word(1, u" apple\t", 5);
    older.registerNoteZh = u"旧"_s;
    newer.registerNoteZh = u"新"_s;
    newer.phonetic = u"/ˈæpl/"_s;
    newer.register_ = Register::slang;
    older.familyRoot = QString();
    newer.familyRoot = u"apple"_s;
    newer.mnemonic = u"记法"_s;
    older.affixes = QList<Affix>();
    newer.affixes = QList<Affix>{Affix::un};
    older.inflections = {{u"plural"_s, u"apples"_s}};
    newer.inflections = {{u"plural"_s, u"x"_s}, {u"base"_s, u"y"_s}};
    older.sourceKeys = {u"b"_s, u"a"_s, u"b"_s};
    newer.sourceKeys = {u"c"_s, u"a"_s};
    older.encounterDays = {u"2026-10-05"_s};
    newer.encounterDays = {u"2026-10-05"_s, u"2026-10-01"_s};
    newer.lastLookupAt = at(3);
    newer.lookupCount = 7;
    for (const WordEntry &entry : {merged(older, newer), merged(newer, older)}) {
        EXPECT_EQ(entry.id, older.id);
        EXPECT_EQ(entry.headword, older.headword);
        EXPECT_EQ(entry.createdAt, older.createdAt);
        EXPECT_EQ(entry.register_, Register::neutral);
        EXPECT_EQ(entry.registerNoteZh, u"旧"_s);
        EXPECT_EQ(entry.phonetic, newer.phonetic);
        EXPECT_EQ(entry.familyRoot, QString());
        EXPECT_EQ(entry.mnemonic, newer.mnemonic);
        EXPECT_EQ(entry.affixes, newer.affixes);
        EXPECT_EQ(entry.inflections->value(u"plural"_s), u"apples"_s);
        EXPECT_EQ(entry.inflections->size(), 2);
        EXPECT_THAT(*entry.sourceKeys, ElementsAre(u"b"_s, u"a"_s, u"b"_s, u"c"_s));
        EXPECT_THAT(*entry.encounterDays, ElementsAre(u"2026-10-01"_s, u"2026-10-05"_s));
        EXPECT_EQ(entry.lastLookupAt, at(3));
        EXPECT_EQ(entry.lookupCount, 7);
        EXPECT_EQ(entry.notes, std::nullopt);
    }
}

TEST(SyncMerge, FormsKeepTheFirstMeetingAndTheLargerCount)
{
    const auto forms = [](std::initializer_list<FormRecord> records) {
        return copyOfWord([&](WordEntry &entry) { entry.forms = QList<FormRecord>(records); });
    };
    const FormRecord ran{FormKind::past, u"ran"_s, at(5), 2, u"He ran."_s};
    const FormRecord runned{FormKind::past, u"runned"_s, at(4), 1, std::nullopt};
    const FormRecord runs{FormKind::plural, u"runs"_s, at(1), 1, std::nullopt};
    FormRecord first = runned;
    first.count = 2;
    EXPECT_THAT(*merged(forms({ran}), forms({runs, runned})).forms, ElementsAre(first, runs));
    FormRecord sameTime = ran;
    sameTime.firstSeenAt = runned.firstSeenAt;
    EXPECT_EQ(merged(forms({sameTime}), forms({runned})).forms->first().form, u"ran"_s);
    EXPECT_EQ(merged(forms({}), word(1, u"run", 0)).forms, QList<FormRecord>());
}

TEST(SyncMerge, DeletionWinsInEveryList)
{
    Example example;
    example.id = id(20);
    AINote note;
    note.id = id(21);
    GrammarEncounter encounter;
    encounter.id = id(22);
    WordEntry kept = word(1, u"run", 0);
    kept.examples = {example};
    kept.notes = QList<AINote>{note};
    SyncBundle a;
    a.words = {kept, word(2, u"gone", 0)};
    note.id = id(23);
    a.notes = {note};
    a.grammar = {encounter};
    SyncBundle b;
    for (const uint number : {2U, 20U, 21U, 22U, 23U})
        b.deleted.append({idText(id(number)), at(-1000)});
    const SyncBundle result = SyncMerge::merge(a, b);
    ASSERT_EQ(result.words.size(), 1);
    EXPECT_TRUE(result.words.first().examples.isEmpty());
    EXPECT_EQ(result.words.first().notes, QList<AINote>());
    EXPECT_TRUE(result.notes.isEmpty());
    EXPECT_TRUE(result.grammar.isEmpty());
    // Only the canonical text is an id.
    b.deleted = {{idText(id(0xabc)).toLower(), at(0)}};
    EXPECT_EQ(SyncMerge::merge(holding(word(0xabc, u"run", 0)), b).words.size(), 1);
}

TEST(SyncMerge, TombstonesKeepTheLatestTimeAndAnOrder)
{
    SyncBundle a, b;
    a.deleted = {{u"C"_s, at(9)}, {u"B"_s, at(1)}};
    b.deleted = {{u"C"_s, at(2)}, {u"A"_s, at(1)}, {u"B"_s, at(1)}};
    const QList<Tombstone> expected{{u"A"_s, at(1)}, {u"B"_s, at(1)}, {u"C"_s, at(9)}};
    EXPECT_EQ(SyncMerge::merge(a, b).deleted, expected);
    EXPECT_EQ(SyncMerge::merge(b, a).deleted, expected);
}

TEST(SyncMerge, EncountersOfOneContentKeepTheEarliest)
{
    const auto affix = [](uint number, QStringView headword, int addedAt) {
        AffixEncounter encounter;
        encounter.id = id(number);
        encounter.affix = Affix::less;
        encounter.headword = headword.toString();
        encounter.addedAt = at(addedAt);
        return encounter;
    };
    SyncBundle a, b;
    a.affixes = {affix(5, u"Careless", 2), affix(6, u"useless", 3)};
    b.affixes = {affix(4, u"careless", 2), affix(7, u"USELESS", 1), affix(8, u"homeless", 9)};
    const auto result = SyncMerge::merge(a, b).affixes;
    EXPECT_THAT(result, ElementsAre(b.affixes[2], b.affixes[0], b.affixes[1]));
    EXPECT_EQ(SyncMerge::merge(b, a).affixes, result);
}

TEST(SyncMerge, LogLinesAreSortedByTheirTimeAndNeverAltered)
{
    const QString early = u"{\"time\":\"2026-10-01T12:00:00Z\",\"kind\":\"save\",\"word\":\"b\"}"_s;
    const QString late = u"{ \"kind\":\"x\", \"time\" : \"2026-10-02T12:00:00Z\" }"_s;
    const QString sameTime = QString(early).replace(u"\"b\""_s, u"\"a\""_s);
    SyncBundle a, b;
    a.log = {late, u"garbage"_s, early, early};
    b.log = {early, u"[1]"_s, sameTime, u"{\"time\":5}"_s};
    const QStringList expected{u"[1]"_s, u"garbage"_s, u"{\"time\":5}"_s, sameTime, early, late};
    EXPECT_EQ(SyncMerge::merge(a, b).log, expected);
    EXPECT_EQ(SyncMerge::merge(b, a).log, expected);
}

TEST(SyncMerge, CountersAndSettingsComeFromTheLaterSide)
{
    const auto stats = [](QStringView day, qint64 reviewed, qint64 newLearned) {
        SyncBundle bundle;
        bundle.stats = ReviewStats{day.toString(), reviewed, newLearned};
        return bundle;
    };
    const SyncBundle today = stats(u"2026-10-06", 1, 0);
    EXPECT_EQ(SyncMerge::merge(stats(u"2026-10-05", 9, 9), today).stats, today.stats);
    EXPECT_EQ(SyncMerge::merge(today, {}).stats, today.stats);
    EXPECT_EQ(SyncMerge::merge(today, stats(u"2026-10-06", 0, 3)).stats, stats(u"2026-10-06", 1, 3).stats);

    const auto settings = [](qint64 learningSlots, qint64 round, bool recall, int changedAt) {
        SyncBundle bundle;
        bundle.settings = StudySettings{
            {.learningSlots = learningSlots, .sessionSize = round, .recallOnLookup = recall}, at(changedAt)};
        return bundle;
    };
    const auto expectWinner = [](const SyncBundle &winner, const SyncBundle &loser) {
        EXPECT_EQ(SyncMerge::merge(winner, loser).settings, winner.settings);
        EXPECT_EQ(SyncMerge::merge(loser, winner).settings, winner.settings);
    };
    expectWinner(settings(1, 1, false, 2), settings(50, 50, true, 1));
    expectWinner(settings(9, 2, false, 1), settings(9, 1, true, 1));
    expectWinner(settings(9, 2, true, 1), settings(9, 2, false, 1));
}

TEST(SyncMerge, WordsOfOneTimeAreOrderedById)
{
    SyncBundle a, b;
    a.words = {word(0x20, u"c", 5), word(0x10, u"b", 5)};
    b.words = {word(0xa0, u"a", 5), word(0x90, u"d", 9)};
    QList<QUuid> ids;
    for (const WordEntry &entry : SyncMerge::merge(a, b).words)
        ids.append(entry.id);
    EXPECT_THAT(ids, ElementsAre(id(0x90), id(0x10), id(0x20), id(0xa0)));
}

} // namespace
