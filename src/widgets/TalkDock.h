#pragma once

#include "widgets/Theme.h"

#include <QScrollArea>

class QHBoxLayout;
class QPushButton;

namespace nimbrelle {

class ReadText;
class TalkField;

/// Buttons in a row, which scrolls where they don't fit; its end then fades out.
class ChipRow : public QScrollArea {
    Q_OBJECT

public:
    /// The margin before the first and after the last, in points.
    ChipRow(const Theme &theme, double margin);

    /// Takes them over, in place of those before.
    void setChips(const QList<QPushButton *> &chips);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fit();

    const Theme &m_theme;
    const double m_margin;
    QWidget *m_fade;
};

/// The bottom of a conversation: the error, the ready-made questions, and the field with its button.
class TalkDock : public QWidget {
    Q_OBJECT

public:
    struct Look {
        double margin = 20; ///< left and right, in points
        QString fieldName; ///< of the field, for a screen reader
        QString placeholder;
    };

    TalkDock(const Theme &theme, const Look &look);

    /// A chip that asks a ready-made question. Pressed, it first gives the focus to the field.
    QPushButton *makeQuestionChip(const QString &name, const QString &text);
    /// Takes all of them over, in place of those before. The questions are disabled while an answer is
    /// coming.
    void setChips(const QList<QPushButton *> &questions, const QList<QPushButton *> &others = {});
    /// Empty for none. `retry`, if there is one, is shown beside it.
    void setError(const QString &text, QPushButton *retry = nullptr);
    void setInput(const QString &text);
    void setAnswering(bool isAnswering);
    void focusField();

signals:
    void inputEdited(const QString &text);
    void sendPressed();
    void stopPressed();

private:
    QWidget *makeErrorRow();
    QWidget *makeInputRow(const Look &look);
    void refreshSend();
    void refreshQuestions();

    const Theme &m_theme;
    bool m_isAnswering = false;
    QWidget *m_errorRow = nullptr;
    ReadText *m_error = nullptr;
    QPushButton *m_retry = nullptr;
    ChipRow *m_chips;
    QList<QPushButton *> m_questions;
    TalkField *m_field = nullptr;
    QPushButton *m_send = nullptr;
    QPushButton *m_stop = nullptr;
};

} // namespace nimbrelle
