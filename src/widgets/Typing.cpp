#include "widgets/Typing.h"

#include "frame/Text.h"

#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QLineEdit>

#include <utility>

namespace nimbrelle {

namespace {

bool isMoveByTab(const QFocusEvent &event)
{
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
}

/// Whether it can change text or selection; a modifier alone can't.
bool isInput(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return event.type() == QEvent::InputMethod || event.type() == QEvent::MouseButtonPress;
    const int key = static_cast<const QKeyEvent &>(event).key();
    return (key < Qt::Key_Shift || key > Qt::Key_ScrollLock) && key != Qt::Key_AltGr;
}

/// Typed, or handed over by an input method.
QString insertedBy(const QEvent &event)
{
    if (event.type() == QEvent::KeyPress)
        return static_cast<const QKeyEvent &>(event).text();
    if (event.type() == QEvent::InputMethod)
        return static_cast<const QInputMethodEvent &>(event).commitString();
    return {};
}

} // namespace

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

SpaceGuard::SpaceGuard(QLineEdit &field) : QObject(&field), m_field(field)
{
    field.installEventFilter(this);
}

bool SpaceGuard::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        m_isFresh = isMoveByTab(*static_cast<QFocusEvent *>(event));
    if (!isInput(*event) || !std::exchange(m_isFresh, false))
        return false;
    const QString inserted = insertedBy(*event);
    if (!inserted.isEmpty() && trimmedSpace(inserted).isEmpty())
        m_field.end(false);
    return false;
}

} // namespace nimbrelle
