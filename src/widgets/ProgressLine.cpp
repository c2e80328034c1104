#include "widgets/ProgressLine.h"

#include "widgets/Theme.h"

#include <QPainter>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

ProgressLine::ProgressLine(const Theme &theme, const QString &name) : m_theme(theme)
{
    setObjectName(name);
    setFixedHeight(theme.points(4));
}

void ProgressLine::setProgress(qint64 done, qint64 total, const QString &text)
{
    m_part = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0;
    setAccessibleName(u"进度 "_s + text);
    update();
}

void ProgressLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double radius = height() / 2.0;
    painter.setBrush(m_theme.colour(Tone::border));
    painter.drawRoundedRect(QRectF(rect()), radius, radius);
    if (m_part <= 0)
        return;
    painter.setBrush(m_theme.colour(Tone::leaf));
    const double done = std::max<double>(height(), width() * m_part);
    painter.drawRoundedRect(QRectF(0, 0, done, height()), radius, radius);
}

} // namespace nimbrelle
