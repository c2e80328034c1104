#include "widgets/Typing.h"

#include <QInputMethodEvent>
#include <QWidget>

namespace nimbrelle {

ComposingGuard::ComposingGuard(QWidget &field) : QObject(&field)
{
    field.installEventFilter(this);
}

bool ComposingGuard::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::InputMethod)
        m_isComposing = !static_cast<QInputMethodEvent *>(event)->preeditString().isEmpty();
    else if (event->type() == QEvent::FocusOut)
        m_isComposing = false; // the method lets go of it
    if (event->type() != QEvent::KeyPress || !m_isComposing)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace nimbrelle
