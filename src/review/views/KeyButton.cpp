#include "review/views/KeyButton.h"

#include "review/views/ReviewParts.h"

#include <QFontMetrics>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double sideMargin = 10;
constexpr double betweenLabelAndCap = 10;
constexpr double capHeight = 16;

} // namespace

KeyButton::KeyButton(
    const Theme &theme, const QString &name, const QString &text, const QString &key, Kind kind, Cap cap)
    : QPushButton(text), m_theme(theme), m_key(key), m_kind(kind), m_cap(cap)
{
    setObjectName(name);
    setAccessibleName(text);
    if (!key.isEmpty())
        setAccessibleDescription(u"按键："_s + key);
    setProperty("kind", kind == Kind::primary ? u"primary"_s : u"outlined"_s);
    setProperty("large", true);
    setFont(theme.font(kind == Kind::primary ? TextType::reading : TextType::text, QFont::Medium));
    setFixedHeight(theme.points(stripHeight));
    setMinimumWidth(neededWidth());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus); // a click must not take the keys away from the screen
}

int KeyButton::neededWidth() const
{
    const int label = QFontMetrics(font()).horizontalAdvance(text());
    const int cap = m_key.isEmpty() ? 0 : capSize().width();
    const int both = m_cap == Cap::below ? std::max(label, cap)
                                         : label + (cap ? cap + m_theme.points(betweenLabelAndCap) : 0);
    return both + 2 * m_theme.points(sideMargin);
}

QSize KeyButton::capSize() const
{
    const QFontMetrics metrics(m_theme.font(TextType::tiny));
    const int height = m_theme.points(capHeight);
    return {std::max(height, metrics.horizontalAdvance(m_key) + m_theme.points(8)), height};
}

void KeyButton::paintEvent(QPaintEvent *)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    QStylePainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawControl(QStyle::CE_PushButton, option);
    const QColor ink = m_theme.colour(m_kind == Kind::primary ? Tone::primaryText : Tone::ink);
    const QFontMetrics metrics(font());
    const QSize label(metrics.horizontalAdvance(text()), metrics.height());
    const QSize cap = m_key.isEmpty() ? QSize(0, 0) : capSize();
    painter.setFont(font());
    painter.setPen(ink);
    if (m_cap == Cap::below && !m_key.isEmpty()) {
        const int gap = m_theme.points(2);
        const int top = (height() - label.height() - gap - cap.height()) / 2;
        painter.drawText(QRect(0, top, width(), label.height()), Qt::AlignCenter, text());
        const QPoint place((width() - cap.width()) / 2, top + label.height() + gap);
        return paintCap(painter, QRect(place, cap), m_theme.colour(Tone::ink2));
    }
    const int gap = m_key.isEmpty() ? 0 : m_theme.points(betweenLabelAndCap);
    const int left = (width() - label.width() - gap - cap.width()) / 2;
    painter.drawText(QRect(left, 0, label.width() + 1, height()), Qt::AlignVCenter | Qt::AlignLeft, text());
    if (!m_key.isEmpty())
        paintCap(painter, QRect(QPoint(left + label.width() + gap, (height() - cap.height()) / 2), cap), ink);
}

void KeyButton::paintCap(QPainter &painter, const QRect &place, const QColor &colour) const
{
    QColor edge = colour;
    edge.setAlphaF(0.55F);
    painter.setPen(edge);
    painter.setBrush(Qt::NoBrush);
    const double radius = m_theme.points(4);
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setPen(colour);
    painter.setFont(m_theme.font(TextType::tiny));
    painter.drawText(place, Qt::AlignCenter, m_key);
}

} // namespace nimbrelle
