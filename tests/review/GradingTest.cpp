#include "review/Grading.h"

#include "support/Printers.h"
#include "support/Words.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

struct Case {
    QString input;
    Rating rating;
    QString message; ///< empty: none
    qint64 hints = 0;
};

void expectGrades(const ReviewQuestion &question, const QList<Case> &cases)
{
    for (const Case &sample : cases) {
        const Grade verdict = grade(sample.input, question, sample.hints);
        EXPECT_EQ(verdict.rating, sample.rating) << sample.input.toStdString();
        EXPECT_EQ(verdict.message.value_or(QString()), sample.message) << sample.input.toStdString();
        EXPECT_EQ(verdict.message.has_value(), !sample.message.isEmpty());
    }
}

const QString anew = u"跟着打一遍，手会记住它"_s;

TEST(Grading, LooksPastCapitalsAndWhatIsAroundTheWord)
{
    WordEntry run = wordNamed(u"run"_s);
    expectGrades(ReviewQuestion::spelling(run), {{u"RUN"_s, Rating::good, {}}});
    expectGrades(ReviewQuestion::spelling(wordNamed(u"Claude"_s)),
        {{u"“Claude,”"_s, Rating::good, {}}, {u"lCuade"_s, Rating::again, anew}});
    run.spellLevel = 3;
    run.inflections = {{u"past"_s, u"ran"_s}};
    run.examples = {exampleOf(u"He ran home yesterday."_s)};
    const QString otherForm = u"意思对了！不过这里要用 run 的过去式：ran"_s;
    expectGrades(ReviewQuestion::spelling(run),
        {{u" RUN! "_s, Rating::hard, otherForm}, {u"run"_s, Rating::hard, otherForm, 2},
            {u"rna"_s, Rating::again, anew}, {u" ..! "_s, Rating::again, u"没关系，跟着打一遍就好"_s}});
}

TEST(Grading, TakesLettersAsAReaderDoes)
{
    expectGrades(ReviewQuestion::spelling(wordNamed(u"cafe\u0301"_s)),
        {{u"café"_s, Rating::good, {}}, {u"cafe"_s, Rating::hard, u"差一个字母"_s},
            {u"cae\u0301f"_s, Rating::hard, u"有两个字母顺序反了：cafe\u0301"_s}});
    expectGrades(ReviewQuestion::spelling(wordNamed(u"don’t"_s)),
        {{u"don't"_s, Rating::good, {}}, {u"don’t"_s, Rating::good, {}}});
    expectGrades(ReviewQuestion::spelling(wordNamed(u"O'Brien"_s)),
        {{u"O’Brien"_s, Rating::good, {}}, {u"o’brien"_s, Rating::good, u"注意大写：O'Brien"_s}});
}

TEST(Grading, CountsEditsInCharacters)
{
    EXPECT_EQ(editDistance(u"kitten"_s, u"sitting"_s), 3);
    EXPECT_EQ(editDistance(u"abc"_s, QString()), 3);
    EXPECT_EQ(editDistance(u"👩\u200d💻x"_s, u"x"_s), 1);
}

TEST(Grading, KnowsASwapOfNeighbours)
{
    EXPECT_TRUE(isAdjacentSwap(u"abdc"_s, u"abcd"_s));
    for (const QString &other : {u"abcd"_s, u"cbad"_s, u"badc"_s, u"abce"_s, u"abc"_s, u"abcdd"_s, QString()})
        EXPECT_FALSE(isAdjacentSwap(other, u"abcd"_s)) << other.toStdString();
}

TEST(Grading, GivesOneRightLetterAtATime)
{
    EXPECT_EQ(withNextLetter(QString(), u"ran"_s), u"r"_s);
    EXPECT_EQ(withNextLetter(u"ruX"_s, u"ran"_s), u"ra"_s);
    EXPECT_EQ(withNextLetter(u"RA"_s, u"ran"_s), u"ran"_s);
    EXPECT_EQ(withNextLetter(u"ranX"_s, u"ran"_s), std::nullopt);
    EXPECT_EQ(withNextLetter(u"caf"_s, u"cafe\u0301"_s), u"cafe\u0301"_s);
}

} // namespace
