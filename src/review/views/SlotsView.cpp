#include "review/views/SlotsView.h"

#include "widgets/Theme.h"

#include <QPainter>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double boxWidth = 30;
constexpr double boxHeight = 38;
constexpr double gap = 6;

} // namespace

SlotsView::SlotsView(const Theme &theme, const QString &answer) : m_theme(theme), m_slots{answer, {}}
{
    setObjectName(u"slots"_s);
    setTyped({});
}

void SlotsView::setAvailableWidth(int width)
{
    m_widest = std::max(1, (width + m_theme.points(gap)) / (m_theme.points(boxWidth) + m_theme.points(gap)));
    fitHeight();
    update();
}

void SlotsView::fitHeight()
{
    const auto rows = static_cast<int>(m_slots.rows(m_widest).size());
    setFixedHeight(rows * m_theme.points(boxHeight) + (rows - 1) * m_theme.points(gap));
}

void SlotsView::setTyped(const QString &typed)
{
    m_slots.typed = typed;
    fitHeight();
    QString spoken;
    for (const LetterSlots::Box &box : m_slots.boxes())
        spoken += box.character + (box.role == LetterSlots::Role::wrong ? u"（错）"_s : QString());
    setAccessibleName(u"字母："_s + spoken);
    update();
}

void SlotsView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = m_theme.font(TextType::heading, QFont::Medium);
    font.setFamilies({u"DejaVu Sans Mono"_s, u"Noto Sans Mono"_s, u"monospace"_s});
    painter.setFont(font);
    QRect place(0, 0, m_theme.points(boxWidth), m_theme.points(boxHeight));
    const int right = place.width() + m_theme.points(gap);
    for (const QList<LetterSlots::Box> &row : m_slots.rows(m_widest)) {
        place.moveLeft(0);
        for (const LetterSlots::Box &box : row) {
            paintBox(painter, place, box);
            place.translate(right, 0);
        }
        place.translate(0, place.height() + m_theme.points(gap));
    }
}

void SlotsView::paintBox(QPainter &painter, const QRect &place, const LetterSlots::Box &box) const
{
    using Role = LetterSlots::Role;
    if (box.role == Role::open && box.character == u" "_s)
        return; // between two words
    const Tone tone = box.role == Role::right ? Tone::good : box.role == Role::wrong ? Tone::bad : Tone::ink2;
    painter.setPen(box.role == Role::open ? m_theme.colour(Tone::border) : m_theme.colour(tone, 0.5));
    painter.setBrush(m_theme.colour(Tone::surface));
    const double radius = m_theme.points(7);
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setPen(m_theme.colour(tone));
    painter.drawText(place.adjusted(0, 0, 0, -m_theme.points(2)), Qt::AlignCenter, box.character);
    if (box.role == Role::open)
        return;
    QPen bar(m_theme.colour(tone), m_theme.points(2));
    if (box.role == Role::wrong)
        bar.setDashPattern({2, 1.2});
    bar.setCapStyle(Qt::FlatCap);
    painter.setPen(bar);
    const double y = place.bottom() - m_theme.points(5);
    painter.drawLine(
        QPointF(place.left() + m_theme.points(7), y), QPointF(place.right() - m_theme.points(6), y));
}

} // namespace nimbrelle
