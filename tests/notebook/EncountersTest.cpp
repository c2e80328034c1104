#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class Encounters : public testing::Test, protected Notebook { };

TEST_F(Encounters, SavingAgainOnlyAddsANewSentence)
{
    store.save(explained("Run", "I run."), page("https://www.a.org/1"));
    clock.advance(24h);
    EXPECT_TRUE(store.save(explained(" run ", "I run."), page("https://b.org")).unlock.isEmpty());
    store.save(explained("RUN", "You run."), {});
    store.save(explained("run"), {});
    const WordEntry &saved = word("run");
    EXPECT_EQ(saved.headword, u"Run"_s);
    EXPECT_EQ(saved.examples.size(), 2);
    EXPECT_EQ(saved.examples.last().sentence, u"You run."_s);
    EXPECT_EQ(saved.lookupCount, 1);
    EXPECT_EQ(saved.encounterDays->size(), 1);
    EXPECT_EQ(events(), QStringList{u"save Run a.org"_s});
    EXPECT_EQ(entriesOnDisk(), QList<WordEntry>{saved});
}

TEST_F(Encounters, TakesWhatTheAISaidAsItCame)
{
    Explanation explanation = explained("reluctant", "He was reluctant.");
    explanation.register_ = u"Technical"_s;
    explanation.sentenceIsExample = true;
    explanation.familyRoot = u" reluct\t"_s;
    explanation.affixes = QStringList{u"re-"_s, u"re"_s, u"zzz"_s};
    explanation.grammar = u"past_simple"_s;
    const auto saved = store.save(explanation, {});
    EXPECT_EQ(saved.entry, word("reluctant"));
    EXPECT_EQ(saved.entry.register_, Register::technical);
    EXPECT_TRUE(saved.entry.examples.first().isGenerated);
    EXPECT_EQ(saved.entry.familyRoot, u"reluct"_s);
    EXPECT_EQ(saved.entry.affixes, (QList<Affix>{Affix::re, Affix::re}));
    ASSERT_EQ(store.affixEncounters().size(), 1) << "a repeated affix is met once";
    EXPECT_EQ(store.affixEncounters().first().root, u" reluct\t"_s);
    EXPECT_EQ(saved.unlock.affixProgress, (Progress{1, 30}));
    EXPECT_FALSE(QFile::exists(paths.grammar)) << "no grammar from a sentence that the AI made up";
}

TEST_F(Encounters, CountsFormsByKind)
{
    Explanation runs = explained("run", "He runs.");
    runs.formKind = u"third_person"_s;
    runs.surfaceForm = u"runs"_s;
    runs.inflections = QMap<QString, QString>{{u"base"_s, u"run"_s}, {u"past"_s, u"ran"_s}};
    const auto saved = store.save(runs, {});
    EXPECT_EQ(saved.unlock.newForm->form, u"runs"_s);
    EXPECT_EQ(saved.unlock.formProgress, (Progress{1, 3}));

    Explanation ran = explained("run", "He ran.");
    ran.formKind = u"Past"_s;
    ran.surfaceForm = u"RAN"_s;
    ran.inflections = QMap<QString, QString>{{u"past"_s, u"runned"_s}};
    const Unlock first = store.recordLookup(ran, {});
    EXPECT_EQ(first.newForm->form, u"ran"_s) << "the form known first stays";
    EXPECT_EQ(first.formProgress, (Progress{2, 3}));
    EXPECT_EQ(store.recordLookup(ran, {}).newForm, std::nullopt);
    EXPECT_EQ(word("run").forms->last().count, 2);

    Explanation odd = explained("run");
    odd.formKind = u"gerundive"_s;
    EXPECT_EQ(store.recordLookup(odd, {}).newForm->kind, FormKind::base);
    EXPECT_EQ(store.save(explained("solo"), {}).unlock.formProgress, std::nullopt)
        << "one slot makes no progress";
}

TEST_F(Encounters, UnlocksGrammarOnceAndCollectsEverySentence)
{
    Explanation explanation = explained("run", "He ran.");
    explanation.grammar = u"past_simple"_s;
    const auto saved = store.save(explanation, page("https://a.org"));
    EXPECT_EQ(saved.unlock.newGrammar, GrammarPoint::pastSimple);
    EXPECT_EQ(saved.unlock.grammarProgress, (Progress{1, 16}));
    store.recordLookup(explanation, {});
    explanation.sentence = u"She ran."_s;
    EXPECT_TRUE(store.recordLookup(explanation, {}).isEmpty());
    ASSERT_EQ(store.grammarEncounters().size(), 2);
    EXPECT_EQ(store.grammarEncounters().first().sentence, u"She ran."_s) << "newest first";
    EXPECT_EQ(store.grammarEncounters().last().sourceURL, u"https://a.org"_s);
}

TEST_F(Encounters, ShowsAnAffixAsNewOnlyInTheFirstWord)
{
    Explanation un = explained("unhappy");
    un.affixes = QStringList{u"un-"_s, u"-able"_s};
    EXPECT_THAT(store.save(un, {}).unlock.newAffixes, ElementsAre(Affix::un, Affix::able));
    un.headword = u"unlock"_s;
    EXPECT_TRUE(store.save(un, {}).unlock.newAffixes.isEmpty());
    EXPECT_TRUE(store.recordLookup(un, {}).isEmpty());
    QStringList met;
    for (const AffixEncounter &encounter : store.affixEncounters())
        met.append(displayForm(encounter.affix) + encounter.headword);
    EXPECT_THAT(met, ElementsAre(u"-ableunlock"_s, u"un-unlock"_s, u"-ableunhappy"_s, u"un-unhappy"_s));
}

TEST_F(Encounters, FindsTheFamilyOfANewWord)
{
    const auto save = [this](const char *headword, const QString &root) {
        Explanation explanation = explained(headword);
        explanation.familyRoot = root;
        return store.save(explanation, {}).unlock.familyMembers;
    };
    EXPECT_THAT(save("care", u"cura"_s), ElementsAre());
    EXPECT_THAT(save("careful", u"care"_s), ElementsAre(u"care"_s));
    EXPECT_THAT(save("Careless", u"CARE"_s), ElementsAre(u"careful"_s, u"care"_s));
    EXPECT_THAT(save("scare", {}), ElementsAre());
    EXPECT_TRUE(store.recordLookup(explained("careful"), {}).isEmpty()) << "its family is no news";
    EXPECT_EQ(word("careful").familyRoot, u"care"_s);
}

TEST_F(Encounters, OfALookupCountDaysAndSourcesOnceAndWakeADormantWord)
{
    EXPECT_TRUE(store.recordLookup(explained("run", "I run."), page("https://a.org")).isEmpty());
    EXPECT_TRUE(store.entries().isEmpty()) << "an unsaved word stays unsaved";
    save("run");
    clock.advance(45 * 24h + 1h);
    EXPECT_EQ(store.recordLookup(explained("run"), page("https://a.org/1")).awakenedAfterDays, 45);
    store.recordLookup(explained("run"), page("https://a.org/2"));
    EXPECT_EQ(events(),
        (QStringList{u"save run"_s, u"awaken run 45"_s, u"lookup run a.org"_s, u"lookup run a.org"_s}));
    EXPECT_EQ(word("run").lookupCount, 3);
    EXPECT_EQ(word("run").encounterDays->size(), 2);
    store.setWantToLearn(word("run").id, true);
    clock.advance(45 * 24h);
    EXPECT_EQ(store.recordLookup(explained("run"), {.app = u"Editor"_s}).awakenedAfterDays, std::nullopt);
    EXPECT_EQ(word("run").sourceKeys, (QStringList{u"a.org"_s, u"Editor"_s}));
    EXPECT_EQ(word("run").lastLookupAt, clock.now());
}

TEST_F(Encounters, NameWhatTheUserReads)
{
    for (int i = 0; i < 9; ++i) {
        const QByteArray headword = "w" + QByteArray::number(i);
        PageSource source = page("https://often.org");
        source.title = u"T%1"_s.arg(i);
        store.save(explained(headword.constData(), "A sentence."), source);
        source.url = u"https://site%1.org"_s.arg(i);
        store.recordLookup(explained(headword.constData()), source);
    }
    const QStringList interests = store.topInterests();
    EXPECT_EQ(interests.first(), u"often.org"_s);
    EXPECT_THAT(interests.mid(5),
        ElementsAre(u"T7"_s, u"T6"_s, u"T5"_s, u"T4"_s, u"T3"_s, u"T2"_s, u"T1"_s, u"T0"_s));
}

} // namespace
