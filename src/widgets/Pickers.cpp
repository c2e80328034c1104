#include "widgets/Pickers.h"

#include "widgets/Icons.h"
#include "widgets/Theme.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>

#include <cmath>

namespace nimbrelle {

namespace {

constexpr double pickerHeight = 28;
constexpr double chevronSize = 12;
constexpr double sliderWidth = 160;
constexpr double sliderHeight = 24;
constexpr double grooveHeight = 4;
constexpr double handleSize = 16;

/// The toolkit's own tells the choice for a name, and leaves the label to a relation that few readers ask
/// for.
class PickerAccess : public QAccessibleWidget {
public:
    explicit PickerAccess(QComboBox *picker) : QAccessibleWidget(picker, QAccessible::ComboBox) { }

    QString text(QAccessible::Text which) const override
    {
        return which == QAccessible::Value ? picker().currentText() : QAccessibleWidget::text(which);
    }
    int childCount() const override { return 1; }
    QAccessibleInterface *child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(picker().view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child->object() == picker().view() ? 0 : -1;
    }
    QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }
    void doAction(const QString &) override
    {
        if (picker().view()->isVisible())
            picker().hidePopup();
        else
            picker().showPopup();
    }

private:
    QComboBox &picker() const { return *static_cast<QComboBox *>(widget()); }
};

QAccessibleInterface *accessOf(const QString &, QObject *object)
{
    auto *picker = qobject_cast<Picker *>(object);
    return picker ? new PickerAccess(picker) : nullptr;
}

} // namespace

Picker::Picker(
    const Theme &theme, const QString &name, const QString &what, const QStringList &choices, QWidget *parent)
    : QComboBox(parent), m_theme(theme)
{
    QAccessible::installFactory(accessOf); // once, however often it is said
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
    : QSlider(Qt::Horizontal, parent), m_theme(theme), m_range(range)
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

/// By hand, since a style sheet's rounding gives up where sizes are not to its liking.
void StepSlider::paintEvent(QPaintEvent *)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QPointF knob =
        QRectF(style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this)).center();
    const double groove = m_theme.points(grooveHeight);
    const double middle = height() / 2.0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.colour(Tone::border));
    painter.drawRoundedRect(QRectF(0, middle - groove / 2, width(), groove), groove / 2, groove / 2);
    painter.setBrush(m_theme.colour(Tone::accentLine));
    painter.drawRoundedRect(QRectF(0, middle - groove / 2, knob.x(), groove), groove / 2, groove / 2);
    const double line = hasFocus() ? m_theme.points(2) : 1;
    const double radius = (m_theme.points(handleSize) - line) / 2;
    painter.setPen(QPen(m_theme.colour(hasFocus() ? Tone::accentLine : Tone::borderStrong), line));
    painter.setBrush(m_theme.colour(Tone::surface));
    painter.drawEllipse(QPointF(knob.x(), middle), radius, radius);
}

void StepSlider::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace nimbrelle
