#include "main/OcrSheet.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

namespace nimbrelle::SelfTest {

namespace {

// Of 32 bits a pixel, so that its rows have no padding.
Picture pictureFrom(const QImage &image)
{
    const QByteArray pixels(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
    return {.width = image.width(), .height = image.height(), .scale = 1, .pixels = pixels};
}

} // namespace

TextSheet drawTextSheet()
{
    QFont font;
    font.setPixelSize(sheetFontSize);
    QImage image(sheetSize.toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::black);
    for (const SheetLine &line : sheetLines())
        painter.drawText(QPointF(line.baseline.x(), sheetSize.height() - line.baseline.y()), line.text);
    painter.end();
    const QFontMetricsF metrics(font);
    const auto widthOf = [metrics](const QString &text) { return metrics.horizontalAdvance(text); };
    return {pictureFrom(image), widthOf, metrics.height()};
}

} // namespace nimbrelle::SelfTest
