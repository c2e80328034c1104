#include "review/SpellingScaffold.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

TEST(SpellingScaffold, BlanksVowelsAndDoubleLettersEvenly)
{
    struct Case {
        QString word;
        qint64 blanks;
        QString pattern;
    };
    const Case cases[]{{u"comment"_s, 99, u"c__m_nt"_s}, {u"ngl"_s, 2, u"n__"_s}, {u"a"_s, 1, u"a"_s},
        {QString(), 2, QString()}, {u"c3-4"_s, 2, u"c3-4"_s}, {u"EgG"_s, 1, u"E_G"_s},
        {u"run"_s, 0, u"run"_s}, {u"run"_s, -1, u"run"_s}, {u"cafe\u0301s"_s, 1, u"c_fe\u0301s"_s},
        {u"nne\u0301\u0301"_s, 1, u"nn_"_s}};
    for (const Case &sample : cases)
        EXPECT_EQ(SpellingScaffold::fillPattern(sample.word, sample.blanks), sample.pattern)
            << sample.word.toStdString() << " with " << sample.blanks;
}

TEST(SpellingScaffold, CutsBetweenVowelGroups)
{
    for (const QString &whole :
        {u"tree"_s, u"ago"_s, u"make"_s, u"Yoyo"_s, u"yyyy"_s, u"free"_s, u"ale\u0301rt"_s, QString()})
        EXPECT_EQ(SpellingScaffold::syllables(whole).join(u'·'), whole);
    EXPECT_EQ(SpellingScaffold::syllables(u"ABOUT"_s).join(u'·'), u"A·BOUT"_s);
}

TEST(SpellingScaffold, HidesTheLongestChunkThatIsNoAffix)
{
    struct Case {
        QString word;
        QList<Affix> affixes;
        QString pattern; ///< empty when the word can't be divided
    };
    using enum Affix;
    const Case cases[]{{u"unbelievable"_s, {un, un, able, able}, u"un · be · ____ · able"_s},
        {u"Decision"_s, {tion}, u"De · __ · sion"_s}, {u"Unlock"_s, {un}, u"Un · ____"_s},
        {u"unit"_s, {un}, u"u · ___"_s}, {u"illegal"_s, {in, al}, u"il · ___ · al"_s},
        {u"reread"_s, {re}, u"re · ____"_s}, {u"lessless"_s, {less}, u"____ · less"_s},
        {u"give up on"_s, {in}, u"____ · up · on"_s}, {u" word "_s, {}, {}},
        {u"in them"_s, {}, u"in · ____"_s}, {u"preret"_s, {pre, re}, u"pre · ___"_s},
        {u"reputation"_s, {tion}, u"re · ___ · ation"_s}, {u"un\u0303able"_s, {un}, u"u · _____"_s},
        {u"unun\u0301un"_s, {un}, u"un · u · ___"_s}};
    for (const Case &sample : cases)
        EXPECT_EQ(
            SpellingScaffold::chunkPattern(sample.word, sample.affixes).value_or(QString()), sample.pattern)
            << sample.word.toStdString();
}

TEST(SpellingScaffold, KnowsAffixesFromTheRest)
{
    using enum Affix;
    const QList<SpellingScaffold::Chunk> chunks{
        {u"un"_s, true}, {u"care"_s, false}, {u"ful"_s, true}, {u"ly"_s, true}};
    EXPECT_EQ(SpellingScaffold::chunks(u"uncarefully"_s, {un, ly, ful}), chunks);
    EXPECT_EQ(SpellingScaffold::spellings(ship), QStringList{u"ship"_s});
    EXPECT_EQ(SpellingScaffold::spellings(Affix::in).size(), 4);
}

} // namespace
