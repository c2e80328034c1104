#include "sync/views/QrCode.h"

#include "widgets/Theme.h"

#include <QImage>
#include <QPainter>
#include <qrencode.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int quietZone = 4; // modules on each side
constexpr double moduleSize = 3; // points
constexpr int leastModulePixels = 3;
constexpr double cornerRadius = 8;

} // namespace

QrCode::QrCode(const Theme &theme, const QString &text, QWidget *parent) : QWidget(parent), m_theme(theme)
{
    setAccessibleName(u"同步码的二维码"_s);
    const QByteArray bytes = text.toUtf8();
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeString8bit(bytes.constData(), 0, QR_ECLEVEL_M), &QRcode_free);
    if (!code)
        return;
    m_side = code->width;
    m_modules.resize(qsizetype{m_side} * m_side);
    std::transform(code->data, code->data + m_modules.size(), m_modules.begin(),
        [](unsigned char module) { return static_cast<char>(module & 1U); });
    const double ratio = devicePixelRatioF();
    const int pixels =
        std::max(leastModulePixels, static_cast<int>(std::lround(theme.points(moduleSize) * ratio)));
    const int side = static_cast<int>(std::ceil((m_side + 2 * quietZone) * pixels / ratio));
    setFixedSize(side, side);
}

void QrCode::paintEvent(QPaintEvent *)
{
    if (isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(m_theme.colour(Tone::border));
    painter.setBrush(Qt::white);
    const double radius = m_theme.points(cornerRadius);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    const double ratio = painter.device()->devicePixelRatioF();
    const int pixels = static_cast<int>(width() * ratio) / (m_side + 2 * quietZone);
    QImage code(m_side, m_side, QImage::Format_RGB32);
    for (int y = 0; y < m_side; ++y)
        for (int x = 0; x < m_side; ++x)
            code.setPixel(x, y, m_modules.at(qsizetype{y} * m_side + x) ? 0xFF000000 : 0xFFFFFFFF);
    code = code.scaled(m_side * pixels, m_side * pixels, Qt::KeepAspectRatio, Qt::FastTransformation);
    code.setDevicePixelRatio(ratio);
    const int margin = (static_cast<int>(width() * ratio) - code.width()) / 2;
    painter.drawImage(QPointF(margin / ratio, margin / ratio), code);
}

} // namespace nimbrelle
