#include "notebook/Catalogue.h"

#include "frame/RecordCodec.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

TEST(Catalogue, ReadsLooselyButNotCarelessly)
{
    for (const char *text : {"past_participle", "pastparticiple", "PastParticiple", "PAST__PARTICIPLE_"})
        EXPECT_EQ(looseFormKind(QString::fromLatin1(text)), FormKind::pastParticiple) << text;
    for (const char *text : {"past participle", "past-participle", "", "none", "pastParticiples"})
        EXPECT_EQ(looseFormKind(QString::fromLatin1(text)), std::nullopt) << text;
    EXPECT_EQ(looseFormKind(std::nullopt), std::nullopt);
    EXPECT_EQ(looseGrammarPoint(u"present_simple"_s), GrammarPoint::presentSimple);
    EXPECT_EQ(looseGrammarPoint(u"past_simple_tense"_s), std::nullopt);
    EXPECT_EQ(registerFrom(u"Technical"_s), Register::technical);
    EXPECT_EQ(registerFrom(u"Formal-ish"_s), Register::neutral);
    EXPECT_EQ(registerFrom(std::nullopt), Register::neutral);
}

TEST(Catalogue, ListsThirtyAffixesForTheAI)
{
    const QString &list = affixApiList();
    EXPECT_TRUE(list.startsWith(u"\"un-\", \"in-\", \"dis-\""_s));
    EXPECT_TRUE(list.endsWith(u"\"-en\", \"-ship\""_s));
    EXPECT_EQ(list.count(u'"'), 60);
    EXPECT_EQ(displayForm(Affix::inter), u"inter-"_s);
    EXPECT_EQ(displayForm(Affix::tion), u"-tion"_s);
    for (const Affix affix : allCases<Affix>())
        EXPECT_FALSE(meaning(affix).isEmpty() || examples(affix).isEmpty()) << int(affix);
    EXPECT_EQ(variants(Affix::ize), u"英式写作 -ise"_s);
    for (const GrammarPoint point : allCases<GrammarPoint>())
        EXPECT_EQ(explanation(point).count(u"\n例："_s), 1) << int(point);
}

TEST(Explanation, ReadsFormsAndAffixesTolerantly)
{
    Explanation explanation;
    explanation.inflections = QMap<QString, QString>{{u"third_person"_s, u"runs"_s}, {u"PAST"_s, u" ran "_s},
        {u"base"_s, u"run"_s}, {u"ing"_s, u" "_s}, {u"foo"_s, u"x"_s}};
    const QList<std::pair<FormKind, QString>> expected{
        {FormKind::base, u"run"_s}, {FormKind::thirdPerson, u"runs"_s}, {FormKind::past, u"ran"_s}};
    EXPECT_EQ(explanation.allForms(), expected);
    explanation.affixes = QStringList{u"un-"_s, u"-able"_s, u"UN"_s, u"xyz"_s, u" -Tion "_s, QString()};
    EXPECT_EQ(explanation.affixList(), (QList<Affix>{Affix::un, Affix::able, Affix::un, Affix::tion}));
}

TEST(PageSource, NamesItsHost)
{
    const std::pair<const char *, const char *> hosts[]{{"https://www.example.org/a", "example.org"},
        {"https://old.example.org/", "old.example.org"}, {"https://a.org:8443/x?y=www.", "a.org"},
        {"file:///home/x/my%20notes.pdf", "my notes.pdf"}, {"file:///home/x/", "x"}};
    for (const auto &[url, host] : hosts)
        EXPECT_EQ(hostOf(QString::fromLatin1(url)), QString::fromLatin1(host));
    for (const char *url : {"", "https://", "not an address", "file:///"})
        EXPECT_EQ(hostOf(QString::fromLatin1(url)), std::nullopt) << url;
    EXPECT_EQ(hostOf(std::nullopt), std::nullopt);
    EXPECT_EQ((PageSource{.app = u"Editor"_s}).sourceKey(), u"Editor"_s);
}

} // namespace
