#pragma once

#include <QLineEdit>

namespace nimbrelle {

class ComposingGuard;
class Theme;

/// The field in which a word is typed. While an input method composes, its text is no answer, and Return and
/// Tab are the method's alone.
class AnswerField : public QLineEdit {
    Q_OBJECT

public:
    enum class Tab { givesLetter, movesOn };

    AnswerField(
        const Theme &theme, const QString &name, const QString &what, const QString &placeholder, Tab tab);

signals:
    void submitted();
    void letterWanted();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    const Tab m_tab;
    const ComposingGuard &m_composing;
};

} // namespace nimbrelle
