#include "review/views/AnswerField.h"

#include "widgets/Theme.h"
#include "widgets/Typing.h"

#include <QKeyEvent>

namespace nimbrelle {

using namespace Qt::StringLiterals;

AnswerField::AnswerField(
    const Theme &theme, const QString &name, const QString &what, const QString &placeholder, Tab tab)
    : m_tab(tab), m_composing(*new ComposingGuard(*this))
{
    new SpaceGuard(*this);
    setObjectName(name);
    setAccessibleName(what);
    setPlaceholderText(placeholder);
    setProperty("kind", u"answer"_s);
    setFont(theme.font(TextType::meaning, QFont::Normal));
    setFixedHeight(theme.points(40));
    setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase | Qt::ImhPreferLatin);
}

bool AnswerField::event(QEvent *event)
{
    if (m_tab == Tab::givesLetter && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Tab && key->modifiers() == Qt::NoModifier) {
            if (!m_composing.isComposing())
                emit letterWanted();
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void AnswerField::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn)
        return QLineEdit::keyPressEvent(event);
    event->accept();
    if (!event->isAutoRepeat()) // a key held down must not answer the next question too
        emit submitted();
}

} // namespace nimbrelle
