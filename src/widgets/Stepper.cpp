#include "widgets/Stepper.h"

#include "widgets/Controls.h"

#include <QFocusEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStyleOptionButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double buttonWidth = 31;

} // namespace

/// Disabled where there is nothing left to step to. Under the user's finger it only looks and acts so, or the
/// focus would go to the other one, and the next press back again.
class StepButton : public QPushButton {
public:
    StepButton(const Theme &theme, const QString &name, Icon icon, const QString &side)
    {
        dressButton(*this, theme, name, {}, {.kind = ButtonKind::outlined, .icon = icon});
        setProperty("half", side);
        setFixedWidth(theme.points(buttonWidth));
        setAutoRepeat(true);
    }

    bool isUsable() const { return m_isUsable; }
    void setUsable(bool usable)
    {
        m_isUsable = usable;
        setEnabled(usable || hasFocus());
        setAccessibleDescription(usable ? QString() : u"已经到头"_s);
        update();
    }

protected:
    void initStyleOption(QStyleOptionButton *option) const override
    {
        QPushButton::initStyleOption(option);
        if (!m_isUsable)
            option->state &= ~QStyle::State_Enabled;
    }
    void focusOutEvent(QFocusEvent *event) override
    {
        QPushButton::focusOutEvent(event);
        if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
            setEnabled(m_isUsable);
    }

private:
    bool m_isUsable = true;
};

Stepper::Stepper(const Theme &theme, const QString &name, QWidget *parent)
    : QFrame(parent)
    , m_less(new StepButton(theme, name + u"Less"_s, Icon::minus, u"left"_s))
    , m_more(new StepButton(theme, name + u"More"_s, Icon::plus, u"right"_s))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_less);
    row->addWidget(m_more);
    const auto connectTo = [this](StepButton *button, void (Stepper::*stepped)()) {
        connect(button, &QPushButton::clicked, this, [this, button, stepped] {
            if (button->isUsable())
                emit(this->*stepped)();
        });
    };
    connectTo(m_less, &Stepper::steppedDown);
    connectTo(m_more, &Stepper::steppedUp);
}

void Stepper::setValue(const QString &what, bool canGoDown, bool canGoUp)
{
    m_less->setAccessibleName(u"减少："_s + what);
    m_more->setAccessibleName(u"增加："_s + what);
    m_less->setUsable(canGoDown);
    m_more->setUsable(canGoUp);
}

} // namespace nimbrelle
