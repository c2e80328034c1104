#include "notebook/Catalogue.h"

#include "frame/RecordCodec.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

TEST(Catalogue, ReadsLooselyButNotCarelessly)
{
    for (const char *text : {"past_participle", "pastparticiple", "PastParticiple", "PAST__PARTICIPLE_"})
        EXPECT_EQ(looseFormKind(QString::fromLatin1(text)), FormKind::pastParticiple) << text;
    for (const char *text : {"past participle", "past-participle", "", "none", "pastParticiples"})
        EXPECT_EQ(looseFormKind(QString::fromLatin1(text)), std::nullopt) << text;
    EXPECT_EQ(looseFormKind(std::nullopt), std::nullopt);
    EXPECT_EQ(looseGrammarPoint(QStringLiteral("present_simple")), GrammarPoint::presentSimple);
    EXPECT_EQ(looseGrammarPoint(QStringLiteral("past_simple_tense")), std::nullopt);
    EXPECT_EQ(registerFrom(QStringLiteral("Technical")), Register::technical);
    EXPECT_EQ(registerFrom(QStringLiteral("Formal-ish")), Register::neutral);
    EXPECT_EQ(registerFrom(std::nullopt), Register::neutral);
}

TEST(Catalogue, ListsThirtyAffixesForTheAI)
{
    const QString &list = affixApiList();
    EXPECT_TRUE(list.startsWith(QStringLiteral("\"un-\", \"in-\", \"dis-\"")));
    EXPECT_TRUE(list.endsWith(QStringLiteral("\"-en\", \"-ship\"")));
    EXPECT_EQ(list.count(u'"'), 60);
    EXPECT_EQ(displayForm(Affix::inter), QStringLiteral("inter-"));
    EXPECT_EQ(displayForm(Affix::tion), QStringLiteral("-tion"));
    for (const Affix affix : allCases<Affix>())
        EXPECT_FALSE(meaning(affix).isEmpty() || examples(affix).isEmpty()) << int(affix);
    EXPECT_EQ(variants(Affix::ize), QStringLiteral("英式写作 -ise"));
    EXPECT_EQ(variants(Affix::un), QString());
    for (const GrammarPoint point : allCases<GrammarPoint>())
        EXPECT_EQ(explanation(point).count(QStringLiteral("\n例：")), 1) << int(point);
}

TEST(Explanation, GathersFormsInDeclaredOrder)
{
    Explanation explanation;
    explanation.inflections = QMap<QString, QString>{{QStringLiteral("third_person"), QStringLiteral("runs")},
        {QStringLiteral("PAST"), QStringLiteral(" ran ")}, {QStringLiteral("base"), QStringLiteral("run")},
        {QStringLiteral("ing"), QStringLiteral(" ")}, {QStringLiteral("foo"), QStringLiteral("x")}};
    const QList<std::pair<FormKind, QString>> expected{{FormKind::base, QStringLiteral("run")},
        {FormKind::thirdPerson, QStringLiteral("runs")}, {FormKind::past, QStringLiteral("ran")}};
    EXPECT_EQ(explanation.allForms(), expected);
    EXPECT_TRUE(Explanation().allForms().isEmpty());
}

TEST(Explanation, KnowsItsAffixesWhateverTheirHyphensAndCase)
{
    Explanation explanation;
    explanation.affixes = QStringList{QStringLiteral("un-"), QStringLiteral("-able"), QStringLiteral("UN"),
        QStringLiteral("xyz"), QStringLiteral(" -Tion "), QString()};
    EXPECT_EQ(explanation.affixList(), (QList<Affix>{Affix::un, Affix::able, Affix::un, Affix::tion}));
}

TEST(PageSource, NamesItsHost)
{
    const std::pair<const char *, const char *> hosts[]{
        {"https://www.example.org/a", "example.org"},
        {"https://old.example.org/", "old.example.org"},
        {"https://example.org:8443/x?y=www.", "example.org"},
        {"file:///home/x/my%20notes.pdf", "my notes.pdf"},
        {"file:///home/x/", "x"},
    };
    for (const auto &[url, host] : hosts)
        EXPECT_EQ(hostOf(QString::fromLatin1(url)), QString::fromLatin1(host));
    for (const char *url : {"", "https://", "not an address", "file:///"})
        EXPECT_EQ(hostOf(QString::fromLatin1(url)), std::nullopt) << url;
    EXPECT_EQ(hostOf(std::nullopt), std::nullopt);
    EXPECT_EQ((PageSource{QStringLiteral("Editor"), std::nullopt, std::nullopt}).sourceKey(),
        QStringLiteral("Editor"));
    EXPECT_EQ((PageSource{QStringLiteral("Editor"), QStringLiteral("https://a.org"), {}}).sourceKey(),
        QStringLiteral("a.org"));
}

} // namespace
