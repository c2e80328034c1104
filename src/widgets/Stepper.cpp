#include "widgets/Stepper.h"

#include "widgets/Controls.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double buttonWidth = 31;

QPushButton *makeHalf(const Theme &theme, const QString &name, Icon icon, const QString &side)
{
    auto *button = makeButton(theme, name, {}, {.kind = ButtonKind::outlined, .icon = icon});
    button->setProperty("half", side);
    button->setFixedWidth(theme.points(buttonWidth));
    button->setAutoRepeat(true);
    return button;
}

/// A button that is switched off under the user's finger hands the focus to its neighbour, and not to
/// whatever comes next.
void setUsable(QPushButton &button, QPushButton &neighbour, bool usable)
{
    if (!usable && button.hasFocus())
        neighbour.setFocus(Qt::OtherFocusReason);
    button.setEnabled(usable);
}

} // namespace

Stepper::Stepper(const Theme &theme, const QString &name, QWidget *parent)
    : QFrame(parent)
    , m_less(makeHalf(theme, name + u"Less"_s, Icon::minus, u"left"_s))
    , m_more(makeHalf(theme, name + u"More"_s, Icon::plus, u"right"_s))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_less);
    row->addWidget(m_more);
    connect(m_less, &QPushButton::clicked, this, &Stepper::steppedDown);
    connect(m_more, &QPushButton::clicked, this, &Stepper::steppedUp);
}

void Stepper::setValue(const QString &what, bool canGoDown, bool canGoUp)
{
    m_less->setAccessibleName(u"减少："_s + what);
    m_more->setAccessibleName(u"增加："_s + what);
    if (canGoDown)
        m_less->setEnabled(true); // first, so that it can take the focus
    setUsable(*m_more, *m_less, canGoUp);
    setUsable(*m_less, *m_more, canGoDown);
}

} // namespace nimbrelle
