#include "main/SelfTestOcr.h"

#include "support/Await.h"
#include "support/FakeRecognition.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <QTextStream>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace nimbrelle {

class SelfTestOcr : public testing::Test {
protected:
    SelfTestOcr()
    {
        const QSizeF size = SelfTest::sheetSize;
        sheet.picture = {760, 200, 1, QByteArray(760 * 200 * 4, '\xff')};
        sheet.widthOf = [](const QString &text) { return 10.0 * static_cast<double>(text.size()); };
        sheet.lineHeight = 26;
        for (const SelfTest::SheetLine &line : SelfTest::sheetLines()) {
            const QRectF box(line.baseline, QSizeF(10.0 * static_cast<double>(line.text.size()), 26));
            recognizer.lines.append(FakeTextRecognizer::line(line.text,
                {box.x() / size.width(), box.y() / size.height(), box.width() / size.width(),
                    box.height() / size.height()}));
        }
    }

    bool run() { return await(SelfTest::runOCR(recognizer, sheet, out)); }

    ManualClock clock;
    FakeTextRecognizer recognizer{clock};
    SelfTest::TextSheet sheet;
    QString printed;
    QTextStream out{&printed};
};

TEST_F(SelfTestOcr, PointsAtThreeWords)
{
    EXPECT_TRUE(run());
    const QString first = u"Reddit thread: what is your unpopular opinion? "_s;
    const QString second = u"I was reluctant to post this, but here we go."_s;
    const QString third = u" ngl the new update is kinda mid tbh."_s;
    EXPECT_EQ(printed,
        u"OK   指着 reluctant → 识别为 reluctant；语境："_s + first + second + third
            + u"\nOK   指着 ngl → 识别为 ngl；语境："_s + second + third
            + u"\nOK   指着 unpopular → 识别为 unpopular；语境："_s + first + second + u'\n');
}

TEST_F(SelfTestOcr, FailsOnOneWordMissed)
{
    recognizer.lines.removeLast();
    EXPECT_FALSE(run());
    EXPECT_TRUE(printed.contains(u"FAIL 指着 ngl → 识别为 -；语境：\nOK   指着 unpopular"_s));
}

TEST_F(SelfTestOcr, FailsWhereNothingCanBeRead)
{
    sheet.picture.pixels.clear();
    EXPECT_FALSE(run());
    sheet.picture.pixels = QByteArray(760 * 200 * 4, '\xff');
    recognizer.failure = u"引擎坏了"_s;
    EXPECT_FALSE(run());
    EXPECT_EQ(printed, u"FAIL: 无法识别图片\nFAIL: 无法识别图片\n"_s);
}

} // namespace nimbrelle
