#pragma once

#include "widgets/Theme.h"

#include <QTextEdit>

namespace nimbrelle {

class ComposingGuard;

/// A field for a message: one line high, growing with its text to five. Return sends, Shift and Return break
/// a line; while an input method composes, Return belongs to the method.
class TalkField : public QTextEdit {
    Q_OBJECT

public:
    /// `name` is for a screen reader.
    TalkField(const Theme &theme, const QString &name, const QString &placeholder);

    QString text() const { return toPlainText(); }
    /// Keeps the cursor where it is if the text is the same.
    void setText(const QString &text);
    const QString &placeholder() const { return m_placeholder; }

signals:
    void submitted();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void fitHeight();
    void setLinePitch();

    const Theme &m_theme;
    const QString m_placeholder;
    const ComposingGuard &m_composing;
};

} // namespace nimbrelle
