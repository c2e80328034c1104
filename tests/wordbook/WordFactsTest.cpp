#include "wordbook/WordFacts.h"

#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

QStringList texts(const QList<StageAction> &actions)
{
    QStringList all;
    for (const StageAction &action : actions)
        all.append(action.text + (action.isEnabled ? u""_s : u" (disabled)"_s));
    return all;
}

} // namespace

TEST(WordFacts, OffersWhatTheStageAllows)
{
    WordEntry word;
    const QString want = u"想学（排到最前）"_s;
    const QString start = u"现在就开始学"_s;
    const QString spell = u"加入常拼（多练拼写）"_s;
    EXPECT_THAT(texts(stageActions(word, true)), ElementsAre(want, start, spell));
    EXPECT_THAT(texts(stageActions(word, false)), ElementsAre(want, start + u" (disabled)"_s, spell));
    word.stage = Stage::resting;
    word.wantToLearn = true;
    EXPECT_THAT(texts(stageActions(word, true)), ElementsAre(u"取消「想学」"_s, start, spell));
    word.stage = Stage::learning;
    word.spellPractice = true;
    EXPECT_THAT(texts(stageActions(word, true)), ElementsAre(u"先休息一周（让出名额）"_s, u"移出常拼"_s));
    word.stage = Stage::mastered;
    EXPECT_THAT(texts(stageActions(word, true)), ElementsAre(u"移出常拼"_s));
}

TEST(WordFacts, AnActionTurnsAWordOnAndOff)
{
    using enum StageAction::Kind;
    Notebook notebook;
    const QUuid id = notebook.save("ship");
    const auto press = [&](StageAction::Kind kind) {
        const auto actions = stageActions(notebook.word("ship"), true);
        perform(*std::ranges::find(actions, kind, &StageAction::kind), notebook.store, id);
    };
    for (const bool isOn : {true, false}) {
        press(want);
        EXPECT_EQ(notebook.word("ship").isWanted(), isOn);
        press(spell);
        EXPECT_EQ(notebook.word("ship").isSpellPractice(), isOn);
    }
    press(start);
    press(rest);
    EXPECT_EQ(notebook.word("ship").restUntil, addDays(notebook.clock.now(), 7));
}

TEST(WordFacts, HoldWhatIsKnownOfAWord)
{
    Notebook notebook;
    notebook.configure([](AppConfig &config) { config.learningSlots = 1; });
    const QUuid id = notebook.save("regression");
    notebook.clock.set(addDays(notebook.clock.now(), 1));
    notebook.store.recordLookup(Notebook::explained("regression"), {});
    const auto facts = [&] {
        return *wordFacts(notebook.store, notebook.config.config(), notebook.clock.now(), id);
    };
    EXPECT_EQ(facts().history, u"查过 2 次 · 在 2 天里遇到 · 2026-03-01 保存"_s);
    EXPECT_EQ(facts().reviews, QString());
    EXPECT_FALSE(facts().isLeech);
    EXPECT_TRUE(facts().actions[1].isEnabled);
    notebook.store.startLearning(notebook.save("ship"));
    EXPECT_FALSE(facts().actions[1].isEnabled); // the one place is taken
    notebook.store.applyReview(id, Rating::good, LogKind::review);
    EXPECT_THAT(
        facts().reviews.toStdString(), testing::MatchesRegex("下次复习：3 月 [0-9]+ 日 · 复习过 1 次"));
    notebook.configure([](AppConfig &config) { config.leechThreshold = 1; });
    notebook.store.applyReview(id, Rating::again, LogKind::review);
    EXPECT_TRUE(facts().isLeech);
    EXPECT_FALSE(wordFacts(notebook.store, {}, {}, QUuid::createUuid()));
}

TEST(WordFacts, ADayOfAnotherYearHasItsYear)
{
    const auto day = [](const char *text) { return *timestampFromIso(std::string_view{text}); };
    const Timestamp now = day("2026-11-23T01:00:00Z");
    EXPECT_EQ(dayText(day("2026-11-25T01:00:00Z"), now), u"11 月 25 日"_s);
    EXPECT_EQ(dayText(day("2026-12-31T15:59:59Z"), now), u"12 月 31 日"_s); // in Shanghai
    EXPECT_EQ(dayText(day("2026-12-31T16:00:00Z"), now), u"2027 年 1 月 1 日"_s);
}

TEST(WordFacts, AnAffixShowsItsWordsWithWhatTheNotebookKnowsOfThem)
{
    Notebook notebook;
    Explanation rewrite = Notebook::explained("rewrite", "It was rewritten in Rust.");
    rewrite.sentenceZh = u"它用 Rust 重写了。"_s;
    rewrite.affixes = QStringList{u"re-"_s};
    rewrite.inflections = QMap<QString, QString>{{u"past_participle"_s, u"rewritten"_s}};
    notebook.store.save(rewrite, {});
    const AffixFacts facts = affixFacts(notebook.store, Affix::re);
    ASSERT_EQ(facts.meetings.size(), 1);
    EXPECT_EQ(facts.meetings[0].sentenceZh, u"它用 Rust 重写了。"_s);
    EXPECT_THAT(facts.meetings[0].forms, testing::Contains(u"rewritten"_s));
    notebook.store.remove(notebook.word("rewrite").id); // the meeting stays
    EXPECT_THAT(affixFacts(notebook.store, Affix::re).meetings[0].forms, ElementsAre(u"rewrite"_s));
    EXPECT_TRUE(affixFacts(notebook.store, Affix::un).meetings.isEmpty());
}

} // namespace nimbrelle
