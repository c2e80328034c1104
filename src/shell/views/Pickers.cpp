#include "shell/views/Pickers.h"

#include "shell/views/Icons.h"
#include "shell/views/Theme.h"

#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <cmath>

namespace nimbrelle {

namespace {

constexpr double pickerHeight = 28;
constexpr double chevronSize = 12;
constexpr double sliderWidth = 160;
constexpr double sliderHeight = 24;

} // namespace

Picker::Picker(
    const Theme &theme, const QString &name, const QString &what, const QStringList &choices, QWidget *parent)
    : QComboBox(parent), m_theme(theme)
{
    setObjectName(name);
    setAccessibleName(what);
    setFont(theme.font(TextType::small, QFont::Medium));
    setFixedHeight(theme.points(pickerHeight));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    addItems(choices);
    setSizeAdjustPolicy(AdjustToContents);
}

void Picker::paintEvent(QPaintEvent *event)
{
    QComboBox::paintEvent(event);
    const int size = m_theme.points(chevronSize);
    const QPixmap chevron =
        iconPixmap(Icon::chevronDown, size, devicePixelRatioF(), m_theme.colour(Tone::ink2));
    QPainter(this).drawPixmap(width() - size - m_theme.points(8), (height() - size) / 2, chevron);
}

void Picker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

StepSlider::StepSlider(
    const Theme &theme, const QString &name, const QString &what, Range range, QWidget *parent)
    : QSlider(Qt::Horizontal, parent), m_range(range)
{
    setObjectName(name);
    setAccessibleName(what);
    setRange(0, static_cast<int>(std::lround((range.to - range.from) / range.step)));
    setPageStep(1);
    setFixedSize(theme.points(sliderWidth), theme.points(sliderHeight));
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QSlider::valueChanged, this,
        [this](int steps) { emit chosen(m_range.from + steps * m_range.step); });
}

void StepSlider::showValue(double value)
{
    const QSignalBlocker silence(this);
    setValue(static_cast<int>(std::lround((value - m_range.from) / m_range.step)));
}

void StepSlider::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace nimbrelle
