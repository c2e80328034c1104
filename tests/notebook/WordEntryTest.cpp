#include "frame/RecordCodec.h"
#include "notebook/SyncBundle.h"
#include "support/Printers.h"
#include "support/TimeZone.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-15T12:00:00Z"});

const QByteArray oldWord =
    R"({"id":"01234567-89AB-CDEF-0123-456789ABCDEF","headword":"run","phonetic":"","pos":"v.",)"
    R"("meaningZh":"跑","definitionEn":"","register":"neutral","registerNoteZh":"",)"
    R"("examples":[],"createdAt":"2026-03-01T08:30:05Z","lookupCount":1})";

TEST(WordEntry, ReadsAnOldRecordAndRefusesABrokenOne)
{
    const auto word = decode<WordEntry>(oldWord);
    ASSERT_TRUE(word);
    EXPECT_EQ(encode(*word, TextForm::canonical)->size(), oldWord.size())
        << "nothing is written for what is absent";

    for (const char *field : {R"("stage":"new")", R"("affixes":["xyz"])", R"("forms":[{"kind":"past"}])",
             R"("review":{"stability":1})", R"("notes":[{}])", R"("wantToLearn":"yes")"}) {
        const QByteArray broken = oldWord.chopped(1) + ',' + field + '}';
        EXPECT_EQ(decode<QList<WordEntry>>('[' + oldWord + ',' + broken + ']'), std::nullopt) << field;
        EXPECT_EQ(decode<SyncBundle>("{\"words\":[" + broken + "]}"), std::nullopt) << field;
    }
    for (const char *key : {"id", "headword", "phonetic", "pos", "meaningZh", "definitionEn", "register",
             "registerNoteZh", "examples", "createdAt", "lookupCount"})
        EXPECT_EQ(decode<WordEntry>(QByteArray(oldWord).replace(key, "other")), std::nullopt) << key;
}

TEST(WordEntry, CountsDaysOfOldRecordsByCreationAndLastLookup)
{
    const TimeZone utc("UTC");
    WordEntry word;
    word.createdAt = now;
    EXPECT_EQ(word.days(), QStringList{u"2026-03-15"_s});
    word.lastLookupAt = now + 11h;
    EXPECT_EQ(word.days().size(), 1);
    word.lastLookupAt = now + 12h;
    word.encounterDays = QStringList();
    EXPECT_EQ(word.days().size(), 2) << "an empty list falls back to the old rule";
    word.encounterDays = QStringList{u"2020-01-01"_s};
    EXPECT_EQ(word.days(), *word.encounterDays);
}

TEST(WordEntry, ListsFormsKnownAndMet)
{
    WordEntry word;
    word.inflections = QMap<QString, QString>{{u"past"_s, u"ran"_s}};
    word.forms = QList<FormRecord>{{FormKind::plural, u"runs"_s, now, 2, {}}};
    const auto slotList = word.formSlots();
    ASSERT_EQ(slotList.size(), 2);
    EXPECT_EQ(slotList[0], (FormSlot{FormKind::past, u"ran"_s, std::nullopt}));
    EXPECT_EQ(slotList[1].record, word.forms->first());
    word.headword = u"ran"_s;
    EXPECT_EQ(word.formTexts(), (QStringList{u"ran"_s, u"runs"_s})) << "each once";
}

TEST(WordEntry, GoesDormantOnlyBeyondTheLimitAndUnwanted)
{
    const AppConfig config;
    WordEntry word;
    word.createdAt = now - 30 * 24h;
    EXPECT_EQ(word.displayStage(config, now), DisplayStage::seen);
    EXPECT_EQ(word.displayStage(config, now + 1us), DisplayStage::dormant);
    word.wantToLearn = true;
    EXPECT_EQ(word.displayStage(config, now + 1us), DisplayStage::seen);
    word.stage = Stage::resting;
    EXPECT_EQ(word.displayStage(config, now + 9999h), DisplayStage::resting);
}

TEST(WordEntry, RanksByWishNotesDaysAndSources)
{
    const TimeZone utc("UTC");
    const AppConfig config;
    const Timestamp midnight = now - 12h;
    WordEntry word;
    word.createdAt = word.lastLookupAt.emplace(midnight);
    EXPECT_DOUBLE_EQ(word.priority(config, midnight), 14);
    word.wantToLearn = true;
    EXPECT_DOUBLE_EQ(word.priority(config, midnight), 1014);

    word.wantToLearn.reset();
    word.notes = QList<AINote>(2);
    word.encounterDays = QStringList{u"2026-03-01"_s, u"2026-03-15"_s};
    word.sourceKeys = QStringList{QString(), QString(), QString(), QString(), QString(), QString()};
    word.register_ = Register::technical;
    EXPECT_DOUBLE_EQ(word.priority(config, midnight), 54);
    word.notes = QList<AINote>(9);
    word.review.emplace().lapses = config.leechThreshold;
    EXPECT_DOUBLE_EQ(word.priority(config, midnight), 54 + 8 + 5);
    word.review->lapses -= 1;
    word.sourceKeys = QStringList();
    word.encounterDays = QStringList{u"no day"_s, u"2027-01-01"_s};
    EXPECT_DOUBLE_EQ(word.priority(config, midnight), 24 + 10 + 10 + 3);

    AppConfig strict;
    strict.leechThreshold = 0;
    word.review.reset();
    EXPECT_DOUBLE_EQ(word.priority(strict, midnight), 24 + 20 + 3 + 5);
}

} // namespace
