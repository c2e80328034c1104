#include "review/LetterSlots.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

// The characters of all boxes, each behind the sign of its role: + right, - wrong, . open.
QString shown(const QString &answer, const QString &typed)
{
    QString text;
    for (const LetterSlots::Box &box : LetterSlots{answer, typed}.boxes()) {
        const QString sign = box.role == LetterSlots::Role::right ? u"+"_s
            : box.role == LetterSlots::Role::wrong                ? u"-"_s
                                                                  : u"."_s;
        text += sign + box.character;
    }
    return text;
}

TEST(LetterSlots, ShowsABoxForEachLetterAndJudgesWhatIsTyped)
{
    EXPECT_EQ(shown(u"Run"_s, QString()), u"._._._"_s);
    EXPECT_EQ(shown(u"Run"_s, u"rX"_s), u"+r-X._"_s);
    EXPECT_EQ(shown(u"go on"_s, u"g"_s), u"+g._. ._._"_s);
    EXPECT_EQ(shown(u"go"_s, u"gone"_s), u"+g+o-n-e"_s);
    EXPECT_EQ(shown(u"cafe\u0301"_s, u"CAFÉ"_s), u"+C+A+F+É"_s) << "composed or not, one letter";
    EXPECT_EQ(shown(u"cafe\u0301"_s, u"cafe"_s), u"+c+a+f-e"_s);
    EXPECT_EQ(shown(QString(), QString()), QString());
}

TEST(LetterSlots, BreaksRowsAfterABlankWhateverIsTyped)
{
    const auto lengths = [](const QString &answer, const QString &typed) {
        QList<qsizetype> result;
        for (const auto &row : LetterSlots{answer, typed}.rows(6))
            result.append(row.size());
        return result;
    };
    EXPECT_EQ(lengths(u"run"_s, {}), QList<qsizetype>{3});
    EXPECT_EQ(lengths(u"give up on"_s, {}), (QList<qsizetype>{5, 5}));
    EXPECT_EQ(lengths(u"give up on"_s, u"givexup"_s), (QList<qsizetype>{5, 5}));
    EXPECT_EQ(lengths(u"deprecate"_s, {}), (QList<qsizetype>{6, 3}));
    EXPECT_EQ(lengths(u"go"_s, u"gooooooo"_s), (QList<qsizetype>{6, 2}));
}

} // namespace
