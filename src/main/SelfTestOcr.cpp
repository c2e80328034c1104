#include "main/SelfTestOcr.h"

#include "screen/ScreenOCR.h"

#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

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
    out << (isRight ? u"OK  "_s : u"FAIL"_s) << u" 指着 "_s << target << u" → 识别为 "_s
        << (found.isEmpty() ? u"-"_s : found) << u"；语境："_s << (result ? result->context : QString())
        << Qt::endl;
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
        {u"Reddit thread: what is your unpopular opinion?"_s, {20, 150}},
        {u"I was reluctant to post this, but here we go."_s, {20, 100}},
        {u"ngl the new update is kinda mid tbh."_s, {20, 50}},
    };
}

QCoro::Task<bool> runOCR(TextRecognizer &recognizer, TextSheet sheet, QTextStream &out)
{
    const QList<RecognizedLine> recognized = co_await linesOf(recognizer, sheet.picture);
    if (recognized.isEmpty()) {
        out << u"FAIL: 无法识别图片"_s << Qt::endl;
        co_return false;
    }
    const QList<ScreenOCR::Line> lines = ScreenOCR::linesFrom(recognized);
    bool isRight = true;
    for (const QString &target : {u"reluctant"_s, u"ngl"_s, u"unpopular"_s})
        isRight = point(target, sheet, lines, out) && isRight;
    co_return isRight;
}

} // namespace nimbrelle::SelfTest
