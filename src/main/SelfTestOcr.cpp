#include "main/SelfTestOcr.h"

#include "screen/ScreenOCR.h"

#include <QTextStream>

#include <algorithm>

namespace nimbrelle::SelfTest {

namespace {

// The middle of the word, as the font measures it.
QPointF cursorOn(const QString &word, const TextSheet &sheet)
{
    const QList<SheetLine> lines = sheetLines();
    const auto line = std::find_if(lines.begin(), lines.end(),
        [&word](const SheetLine &candidate) { return candidate.text.contains(word); });
    const double before = sheet.widthOf(line->text.left(line->text.indexOf(word)));
    const double x = line->baseline.x() + before + sheet.widthOf(word) / 2;
    const double y = line->baseline.y() + sheet.lineHeight / 2;
    return {x / sheetSize.width(), y / sheetSize.height()};
}

bool point(
    const QString &target, const TextSheet &sheet, const QList<ScreenOCR::Line> &lines, QTextStream &out)
{
    const auto result = ScreenOCR::analyze(lines, cursorOn(target, sheet), ScreenOCR::Seek::word);
    const QString found = result ? result->word.value_or(QString()) : QString();
    const bool isRight = found.toLower() == target;
    out << (isRight ? QStringLiteral("OK  ") : QStringLiteral("FAIL")) << QStringLiteral(" 指着 ") << target
        << QStringLiteral(" → 识别为 ") << (found.isEmpty() ? QStringLiteral("-") : found)
        << QStringLiteral("；语境：") << (result ? result->context : QString()) << Qt::endl;
    return isRight;
}

QCoro::Task<QList<RecognizedLine>> linesOf(TextRecognizer &recognizer, Picture picture)
{
    if (!picture.isValid())
        co_return QList<RecognizedLine>();
    try {
        co_return co_await recognizer.recognize(picture, RecognitionStyle::plain, std::stop_token());
    } catch (const Failure &) {
    }
    co_return QList<RecognizedLine>();
}

} // namespace

QList<SheetLine> sheetLines()
{
    return {
        {QStringLiteral("Reddit thread: what is your unpopular opinion?"), {20, 150}},
        {QStringLiteral("I was reluctant to post this, but here we go."), {20, 100}},
        {QStringLiteral("ngl the new update is kinda mid tbh."), {20, 50}},
    };
}

QCoro::Task<bool> runOCR(TextRecognizer &recognizer, TextSheet sheet, QTextStream &out)
{
    const QList<RecognizedLine> recognized = co_await linesOf(recognizer, sheet.picture);
    if (recognized.isEmpty()) {
        out << QStringLiteral("FAIL: 无法识别图片") << Qt::endl;
        co_return false;
    }
    const QList<ScreenOCR::Line> lines = ScreenOCR::linesFrom(recognized);
    bool isRight = true;
    for (const QString &target :
        {QStringLiteral("reluctant"), QStringLiteral("ngl"), QStringLiteral("unpopular")})
        isRight = point(target, sheet, lines, out) && isRight;
    co_return isRight;
}

} // namespace nimbrelle::SelfTest
