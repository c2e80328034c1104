#include "widgets/Spinner.h"

#include "widgets/IconArt.h"
#include "widgets/Theme.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace nimbrelle {

constexpr int stepsPerSecond = 12;
constexpr double degreesPerStep = 30;

Spinner::Spinner(const Theme &theme, double size, QWidget *parent) : QWidget(parent), m_theme(theme)
{
    setObjectName(u"spinner"_s);
    setAccessibleName(u"请稍候"_s);
    setFixedSize(theme.points(size), theme.points(size));
}

void Spinner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect().toRectF().center());
    painter.rotate(m_step * degreesPerStep);
    // The shapes have y upward and fill only the middle of their square.
    const double scale = width() / 0.74;
    painter.scale(scale, -scale);
    painter.translate(-0.5, -0.5);
    painter.fillPath(ensoPath(1.15), m_theme.colour(Tone::ink, 0.88));
    painter.fillPath(leafPath(1.5), m_theme.colour(Tone::leaf));
}

void Spinner::showEvent(QShowEvent *)
{
    if (!m_theme.isStill())
        m_timer.start(1000 / stepsPerSecond, this);
}

void Spinner::hideEvent(QHideEvent *)
{
    m_timer.stop();
}

void Spinner::timerEvent(QTimerEvent *)
{
    if (m_theme.isStill())
        return m_timer.stop();
    m_step = (m_step + 1) % stepsPerSecond;
    update();
}

} // namespace nimbrelle
