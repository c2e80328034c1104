#include "wordbook/WordList.h"

#include "frame/AppConfig.h"
#include "support/ManualClock.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Timestamp now = ManualClock().now();

WordEntry wordOf(const QString &headword, const QString &meaning, std::optional<Stage> stage = std::nullopt,
    qint64 daysAgo = 0)
{
    WordEntry word = wordNamed(headword);
    word.meaningZh = meaning;
    word.stage = stage;
    word.createdAt = addDays(now, -daysAgo);
    return word;
}

QList<WordEntry> someWords()
{
    return {wordOf(u"Reluctant"_s, u"不情愿的"_s, Stage::learning), wordOf(u"deprecate"_s, u"弃用"_s),
        wordOf(u"flaky"_s, u"时好时坏的"_s, Stage::resting), wordOf(u"idempotent"_s, u"幂等的"_s, {}, 31),
        wordOf(u"rewrite"_s, u"重写"_s, Stage::mastered)};
}

QStringList found(const QString &search, std::optional<DisplayStage> stage = std::nullopt)
{
    const QList<WordEntry> words = someWords();
    QStringList headwords;
    for (const qsizetype i : filtered(words, {search, stage}, {}, now))
        headwords.append(words[i].headword);
    return headwords;
}

QStringList titles(const QList<ListRow> &rows)
{
    QStringList all;
    for (const ListRow &row : rows)
        all.append(row.title);
    return all;
}

} // namespace

TEST(WordList, SearchFindsHeadwordsInAnyCaseAndMeanings)
{
    EXPECT_THAT(found(u" \t"_s),
        ElementsAre(u"Reluctant"_s, u"deprecate"_s, u"flaky"_s, u"idempotent"_s, u"rewrite"_s));
    EXPECT_THAT(found(u" RE "_s), ElementsAre(u"Reluctant"_s, u"deprecate"_s, u"rewrite"_s));
    EXPECT_THAT(found(u"的"_s), ElementsAre(u"Reluctant"_s, u"flaky"_s, u"idempotent"_s));
    EXPECT_THAT(found(u"zzz"_s), IsEmpty());
}

TEST(WordList, TheStageFilterGoesByWhatIsShown)
{
    EXPECT_THAT(found({}, DisplayStage::dormant), ElementsAre(u"idempotent"_s));
    EXPECT_THAT(found({}, DisplayStage::seen), ElementsAre(u"deprecate"_s));
    EXPECT_THAT(found(u"的"_s, DisplayStage::resting), ElementsAre(u"flaky"_s));
}

TEST(WordList, ARowCarriesTheMarksOfItsWord)
{
    QList<WordEntry> words = someWords();
    words[1].wantToLearn = true;
    words[1].notes = QList<AINote>{AINote{}};
    words[2].spellPractice = true;
    words[2].notes = QList<AINote>();
    const QList<ListRow> rows = wordRows(words, {}, {}, now);
    const QList<RowMarks> marks{RowMark::learning, RowMark::wanted | RowMark::noted,
        RowMark::spelled | RowMark::resting, RowMark::dormant, RowMark::mastered};
    for (qsizetype i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].marks, marks[i]) << rows[i].title.toStdString();
        EXPECT_EQ(std::get<QUuid>(rows[i].key), words[i].id);
    }
}

TEST(WordList, NotesAreSearchedInOriginalAndAnswerButNotInTheQuestion)
{
    const QList<AINote> notes{
        {.question = u"Why?"_s, .answer = u"因为 **Passive**"_s, .original = u"It was done."_s},
        {.question = u"passive"_s, .answer = u"是"_s, .original = u"A  ship\nsank."_s}};
    EXPECT_EQ(filteredNotes(notes, {}), notes);
    EXPECT_THAT(filteredNotes(notes, u"PASSIVE"_s), ElementsAre(notes[0]));
    EXPECT_THAT(filteredNotes(notes, u"ship"_s), ElementsAre(notes[1]));
    EXPECT_THAT(filteredNotes(notes, u" "_s), ElementsAre(notes[0], notes[1]));
    EXPECT_EQ(noteRows(notes, u"ship"_s).first().detail, u"A ship sank."_s);
    const ListRow unasked = noteRows({AINote{.original = u"A  ship."_s}}, {}).first();
    EXPECT_EQ(unasked.title + u'|' + unasked.detail, u"A ship.|"_s);
}

TEST(WordList, TheCataloguesAreListedWholeWithWhatIsUnlocked)
{
    const QList<ListRow> grammar =
        grammarRows({{.point = GrammarPoint::passive}, {.point = GrammarPoint::passive}});
    EXPECT_EQ(grammar.size(), 17);
    EXPECT_EQ(grammar.first().title, u"已解锁 1"_s);
    EXPECT_TRUE(grammar.first().isHeading());
    EXPECT_EQ(std::ranges::count(grammar, RowMarks(RowMark::unlocked), &ListRow::marks), 1);

    const QList<ListRow> affixes =
        affixRows({{.affix = Affix::re}, {.affix = Affix::re}, {.affix = Affix::tion}});
    EXPECT_EQ(affixes.size(), 32);
    EXPECT_EQ(affixes[0].title, u"已解锁 2 · 前缀"_s);
    EXPECT_EQ(affixes[13].title, u"后缀"_s);
    EXPECT_THAT(titles(affixes.mid(12, 3)), ElementsAre(u"inter-"_s, u"后缀"_s, u"-tion"_s));
    EXPECT_EQ(affixes[4].count, 2);
    EXPECT_FALSE(affixes[4].isMuted);
    EXPECT_EQ(affixes[1].count, 0);
    EXPECT_TRUE(affixes[1].isMuted);
}

TEST(WordList, GrammarMeetingsAreSearchedInBothLanguages)
{
    const QList<GrammarEncounter> met{
        {.point = GrammarPoint::passive, .headword = u"deprecate"_s, .sentence = u"It was deprecated."_s},
        {.point = GrammarPoint::passive,
            .headword = u"delete"_s,
            .sentence = u"It's gone."_s,
            .sentenceZh = u"删了。"_s},
        {.point = GrammarPoint::gerund, .headword = u"delete"_s, .sentence = u"Deleting it."_s}};
    EXPECT_EQ(filteredEncounters(met, GrammarPoint::passive, u" "_s).size(), 2);
    EXPECT_THAT(filteredEncounters(met, GrammarPoint::passive, u"删"_s), ElementsAre(met[1]));
    EXPECT_THAT(filteredEncounters(met, GrammarPoint::passive, u"WAS"_s), ElementsAre(met[0]));
    EXPECT_THAT(filteredEncounters(met, GrammarPoint::gerund, u"delete"_s), ElementsAre(met[2]));
}

} // namespace nimbrelle
