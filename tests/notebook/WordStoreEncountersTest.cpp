#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class Encounters : public testing::Test, protected Notebook { };

TEST_F(Encounters, SavingAgainOnlyAddsANewSentence)
{
    store.save(explained("Run", "I run."), page("https://www.a.org/1"));
    clock.advance(24h);
    const auto again = store.save(explained(" run ", "I run."), page("https://b.org"));
    EXPECT_TRUE(again.unlock.isEmpty());
    store.save(explained("RUN", "You run."), {});
    store.save(explained("run"), {});

    const WordEntry &saved = word("run");
    EXPECT_EQ(store.entries().size(), 1);
    EXPECT_EQ(saved.headword, QStringLiteral("Run"));
    EXPECT_EQ(saved.examples.size(), 2);
    EXPECT_EQ(saved.examples.last().sentence, QStringLiteral("You run."));
    EXPECT_EQ(saved.lookupCount, 1);
    EXPECT_EQ(saved.encounterDays->size(), 1);
    EXPECT_EQ(saved.sourceKeys, QStringList{QStringLiteral("a.org")});
    EXPECT_EQ(events(), QStringList{QStringLiteral("save Run a.org")});
    EXPECT_EQ(entriesOnDisk(), store.entries());
}

TEST_F(Encounters, TakesWhatTheAISaidAsItCame)
{
    Explanation explanation = explained("reluctant", "He was reluctant.");
    explanation.register_ = QStringLiteral("Technical");
    explanation.sentenceIsExample = true;
    explanation.familyRoot = QStringLiteral(" reluct\t");
    explanation.affixes = QStringList{QStringLiteral("re-"), QStringLiteral("re"), QStringLiteral("zzz")};
    explanation.grammar = QStringLiteral("past_simple");
    const auto saved = store.save(explanation, {});
    EXPECT_EQ(saved.entry.register_, Register::technical);
    EXPECT_TRUE(saved.entry.examples.first().isGenerated);
    EXPECT_EQ(saved.entry.familyRoot, QStringLiteral("reluct"));
    EXPECT_EQ(saved.entry.affixes, (QList<Affix>{Affix::re, Affix::re}));
    EXPECT_EQ(saved.entry.stage, std::nullopt);
    ASSERT_EQ(store.affixEncounters().size(), 1) << "a repeated affix is met once";
    EXPECT_EQ(store.affixEncounters().first().root, QStringLiteral(" reluct\t"));
    EXPECT_EQ(saved.unlock.newAffixes, QList<Affix>{Affix::re});
    EXPECT_EQ(saved.unlock.affixProgress, (Progress{1, 30}));
    EXPECT_TRUE(store.grammarEncounters().isEmpty()) << "no grammar from a sentence that the AI made up";
    EXPECT_FALSE(QFile::exists(paths.grammar));
    EXPECT_EQ(events(), QStringList{QStringLiteral("save reluctant")});
}

TEST_F(Encounters, LookingUpAnUnsavedWordChangesNothing)
{
    EXPECT_TRUE(store.recordLookup(explained("run", "I run."), page("https://a.org")).isEmpty());
    EXPECT_TRUE(store.entries().isEmpty());
    EXPECT_TRUE(events().isEmpty());
}

TEST_F(Encounters, CountsFormsByKind)
{
    Explanation runs = explained("run", "He runs.");
    runs.formKind = QStringLiteral("third_person");
    runs.surfaceForm = QStringLiteral("runs");
    runs.inflections = QMap<QString, QString>{
        {QStringLiteral("base"), QStringLiteral("run")}, {QStringLiteral("past"), QStringLiteral("ran")}};
    const auto saved = store.save(runs, {});
    EXPECT_EQ(saved.unlock.newForm->form, QStringLiteral("runs"));
    EXPECT_EQ(saved.unlock.formProgress, (Progress{1, 3}));

    Explanation ran = explained("run", "He ran.");
    ran.formKind = QStringLiteral("Past");
    ran.surfaceForm = QStringLiteral("RAN");
    ran.inflections = QMap<QString, QString>{{QStringLiteral("past"), QStringLiteral("runned")}};
    const Unlock first = store.recordLookup(ran, {});
    EXPECT_EQ(first.newForm->form, QStringLiteral("ran")) << "the form known first stays";
    EXPECT_EQ(first.formProgress, (Progress{2, 3}));
    const Unlock second = store.recordLookup(ran, {});
    EXPECT_EQ(second.newForm, std::nullopt);
    EXPECT_EQ(word("run").forms->last().count, 2);
    EXPECT_EQ(word("run").lookupCount, 3);

    Explanation odd = explained("run");
    odd.formKind = QStringLiteral("gerundive");
    EXPECT_EQ(store.recordLookup(odd, {}).newForm->kind, FormKind::base);
    EXPECT_EQ(store.save(explained("solo"), {}).unlock.formProgress, std::nullopt)
        << "one slot makes no progress";
}

TEST_F(Encounters, UnlocksGrammarOnceAndCollectsEverySentence)
{
    Explanation explanation = explained("run", "He ran.");
    explanation.grammar = QStringLiteral("past_simple");
    const auto saved = store.save(explanation, page("https://a.org"));
    EXPECT_EQ(saved.unlock.newGrammar, GrammarPoint::pastSimple);
    EXPECT_EQ(saved.unlock.grammarProgress, (Progress{1, 16}));
    EXPECT_TRUE(
        store.recordLookup(explanation, {}).isEmpty() || !store.recordLookup(explanation, {}).newGrammar);
    EXPECT_EQ(store.grammarEncounters().size(), 1);
    explanation.sentence = QStringLiteral("She ran.");
    EXPECT_EQ(store.recordLookup(explanation, {}).newGrammar, std::nullopt);
    EXPECT_EQ(store.grammarEncounters().first().sentence, QStringLiteral("She ran.")) << "newest first";
    EXPECT_EQ(store.grammarEncounters().last().sourceURL, QStringLiteral("https://a.org"));
}

TEST_F(Encounters, ShowsAnAffixAsNewOnlyInTheFirstWord)
{
    Explanation un = explained("unhappy");
    un.affixes = QStringList{QStringLiteral("un-"), QStringLiteral("-able")};
    EXPECT_THAT(store.save(un, {}).unlock.newAffixes, ElementsAre(Affix::un, Affix::able));
    un.headword = QStringLiteral("unlock");
    EXPECT_TRUE(store.save(un, {}).unlock.newAffixes.isEmpty());
    EXPECT_EQ(store.affixEncounters().size(), 4);
    EXPECT_EQ(store.affixEncounters().first().affix, Affix::able)
        << "each goes to the front, one after another";
}

TEST_F(Encounters, FindsTheFamilyOfANewWord)
{
    const auto save = [this](const char *headword, const char *root) {
        Explanation explanation = explained(headword);
        if (root)
            explanation.familyRoot = QString::fromLatin1(root);
        return store.save(explanation, {}).unlock.familyMembers;
    };
    EXPECT_TRUE(save("care", nullptr).isEmpty());
    EXPECT_THAT(save("careful", "care"), ElementsAre(QStringLiteral("care")));
    EXPECT_THAT(save("Careless", "CARE"), ElementsAre(QStringLiteral("careful"), QStringLiteral("care")));
    EXPECT_TRUE(save("scare", nullptr).isEmpty());
}

TEST_F(Encounters, WakesADormantWordByMeetingIt)
{
    store.save(explained("run"), {});
    clock.advance(45 * 24h + 1h);
    EXPECT_EQ(store.recordLookup(explained("run"), page("https://a.org")).awakenedAfterDays, 45);
    EXPECT_EQ(events(),
        (QStringList{QStringLiteral("save run"), QStringLiteral("awaken run 45"),
            QStringLiteral("lookup run a.org")}));
    store.setWantToLearn(word("run").id, true);
    clock.advance(45 * 24h);
    EXPECT_EQ(store.recordLookup(explained("run"), {}).awakenedAfterDays, std::nullopt);
}

TEST_F(Encounters, CountsEachDayAndSourceOnce)
{
    store.save(explained("run"), page("https://a.org/1"));
    store.recordLookup(explained("run"), page("https://a.org/2"));
    store.recordLookup(explained("run"), {QStringLiteral("Editor"), std::nullopt, std::nullopt});
    clock.advance(24h);
    store.recordLookup(explained("run"), page("https://a.org/2"));
    EXPECT_EQ(word("run").lookupCount, 4);
    EXPECT_EQ(word("run").encounterDays->size(), 2);
    EXPECT_EQ(word("run").sourceKeys, (QStringList{QStringLiteral("a.org"), QStringLiteral("Editor")}));
}

TEST_F(Encounters, TellsWhatTheUserReads)
{
    for (int i = 0; i < 7; ++i) {
        const QByteArray headword = "w" + QByteArray::number(i), sentence = "s" + headword;
        PageSource source = page("https://often.org");
        source.title = QStringLiteral("T%1").arg(i);
        store.save(explained(headword.constData(), sentence.constData()), source);
        source.url = QStringLiteral("https://site%1.org").arg(i);
        store.recordLookup(explained(headword.constData()), source);
    }
    const QStringList interests = store.topInterests();
    EXPECT_EQ(interests.size(), 12);
    EXPECT_EQ(interests.first(), QStringLiteral("often.org"));
    EXPECT_EQ(interests.mid(5),
        (QStringList{QStringLiteral("T6"), QStringLiteral("T5"), QStringLiteral("T4"), QStringLiteral("T3"),
            QStringLiteral("T2"), QStringLiteral("T1"), QStringLiteral("T0")}));
}

} // namespace
