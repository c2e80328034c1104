#include "widgets/Switch.h"

#include "widgets/Theme.h"

#include <QPainter>

namespace nimbrelle {

namespace {

constexpr double trackWidth = 34;
constexpr double trackHeight = 20;
constexpr double targetHeight = 24;
constexpr double knobGap = 2;
constexpr double ringWidth = 2;

} // namespace

Switch::Switch(const Theme &theme, const QString &name, const QString &what, QWidget *parent)
    : QAbstractButton(parent), m_theme(theme)
{
    setObjectName(name);
    setAccessibleName(what);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(sizeHint());
}

QSize Switch::sizeHint() const
{
    return {m_theme.points(trackWidth), m_theme.points(targetHeight)};
}

void Switch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : 0.45);
    const double height = m_theme.points(trackHeight);
    QRectF track(0, (this->height() - height) / 2, width(), height);
    if (hasFocus()) { // a ring with a gap, since the track may have the ring's colour
        const double ring = m_theme.points(ringWidth);
        painter.setPen(QPen(m_theme.colour(Tone::accentLine), ring));
        painter.drawRoundedRect(
            track.adjusted(ring / 2, ring / 2, -ring / 2, -ring / 2), height / 2, height / 2);
        track.adjust(2 * ring, 2 * ring, -2 * ring, -2 * ring);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.colour(isChecked() ? Tone::accentLine : Tone::borderStrong));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const double gap = m_theme.points(knobGap);
    const double knob = track.height() - 2 * gap;
    const double left = isChecked() ? track.right() - gap - knob : track.left() + gap;
    painter.setBrush(m_theme.colour(Tone::surface));
    painter.drawEllipse(QRectF(left, track.top() + gap, knob, knob));
}

} // namespace nimbrelle
