#include "widgets/Segments.h"

#include "widgets/Theme.h"

#include <QButtonGroup>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

Segments::Segments(const Theme &theme, const QString &name, const QStringList &labels)
    : m_theme(theme), m_buttons(new QButtonGroup(this))
{
    setObjectName(name);
    setProperty("kind", u"segments"_s);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    const QFontMetrics boldest(theme.font(TextType::small, QFont::DemiBold));
    for (qsizetype i = 0; i < labels.size(); ++i) {
        auto *button = new QPushButton(labels[i]);
        button->setObjectName(name + QString::number(i));
        button->setAccessibleName(labels[i]);
        button->setProperty("kind", u"segment"_s);
        button->setCheckable(true);
        button->setCursor(Qt::PointingHandCursor);
        button->setFixedHeight(theme.points(30));
        button->setMinimumWidth(boldest.horizontalAdvance(labels[i]) + theme.points(16));
        button->installEventFilter(this);
        m_buttons->addButton(button, static_cast<int>(i));
        row->addWidget(button, 1);
    }
    m_buttons->button(0)->setChecked(true);
    connect(m_buttons, &QButtonGroup::idClicked, this, &Segments::picked);
    connect(m_buttons, &QButtonGroup::idToggled, this, &Segments::showChosen);
    showChosen();
}

int Segments::chosen() const
{
    return m_buttons->checkedId();
}

void Segments::choose(int which)
{
    m_buttons->button(which)->setChecked(true);
}

void Segments::showChosen()
{
    for (QAbstractButton *button : m_buttons->buttons()) {
        const bool isChosen = button->isChecked();
        button->setFont(m_theme.font(TextType::small, isChosen ? QFont::DemiBold : QFont::Medium));
        button->setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void Segments::step(int by)
{
    const int next = chosen() + by;
    QAbstractButton *button = m_buttons->button(next);
    if (!button)
        return;
    button->setChecked(true);
    button->setFocus(Qt::TabFocusReason);
    emit picked(next);
}

bool Segments::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return false;
    step(key == Qt::Key_Left ? -1 : 1);
    return true;
}

} // namespace nimbrelle
