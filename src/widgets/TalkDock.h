#pragma once

#include "widgets/Theme.h"

#include <QScrollArea>

class QHBoxLayout;
class QPushButton;

namespace nimbrelle {

class ReadText;
class TalkField;

/// Buttons beside one another; where they don't fit, the row goes on behind a fading end and scrolls.
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

/// The foot of a conversation: what failed, ready-made questions, and the field with its button.
class TalkDock : public QWidget {
    Q_OBJECT

public:
    struct Look {
        double margin = 20; ///< left and right, in points
        QString what; ///< what the field is for, to a screen reader
        QString placeholder;
    };

    TalkDock(const Theme &theme, const Look &look);

    void setChips(const QList<QPushButton *> &chips);
    /// Empty for none. `remedy`, if there is one, stands behind it.
    void setError(const QString &text, QPushButton *remedy = nullptr);
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

    const Theme &m_theme;
    QWidget *m_errorRow = nullptr;
    ReadText *m_error = nullptr;
    QPushButton *m_remedy = nullptr;
    ChipRow *m_chips;
    TalkField *m_field = nullptr;
    QPushButton *m_send = nullptr;
    QPushButton *m_stop = nullptr;
};

} // namespace nimbrelle
