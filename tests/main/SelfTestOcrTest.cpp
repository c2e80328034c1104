#include "main/SelfTestOcr.h"

#include "support/Await.h"
#include "support/FakeRecognition.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <QTextStream>

#include <gtest/gtest.h>

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
    const QString first = QStringLiteral("Reddit thread: what is your unpopular opinion? ");
    const QString second = QStringLiteral("I was reluctant to post this, but here we go.");
    const QString third = QStringLiteral(" ngl the new update is kinda mid tbh.");
    EXPECT_EQ(printed,
        QStringLiteral("OK   指着 reluctant → 识别为 reluctant；语境：") + first + second + third
            + QStringLiteral("\nOK   指着 ngl → 识别为 ngl；语境：") + second + third
            + QStringLiteral("\nOK   指着 unpopular → 识别为 unpopular；语境：") + first + second + u'\n');
}

TEST_F(SelfTestOcr, FailsOnOneWordMissed)
{
    recognizer.lines.removeLast();
    EXPECT_FALSE(run());
    EXPECT_TRUE(printed.contains(QStringLiteral("FAIL 指着 ngl → 识别为 -；语境：\nOK   指着 unpopular")));
}

TEST_F(SelfTestOcr, FailsWhereNothingCanBeRead)
{
    sheet.picture.pixels.clear();
    EXPECT_FALSE(run());
    sheet.picture.pixels = QByteArray(760 * 200 * 4, '\xff');
    recognizer.failure = QStringLiteral("引擎坏了");
    EXPECT_FALSE(run());
    EXPECT_EQ(printed, QStringLiteral("FAIL: 无法识别图片\nFAIL: 无法识别图片\n"));
}

} // namespace nimbrelle
