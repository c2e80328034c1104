#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace nimbrelle {

class Theme;

/// Below the notebook's lists: what was deleted a moment ago, and a button that takes it back.
class UndoLine : public QWidget {
    Q_OBJECT

public:
    explicit UndoLine(const Theme &theme);

    /// An empty text leaves the ground alone, so that nothing above it moves.
    void setText(const QString &text);
    bool isOffering() const { return !m_text.isEmpty(); }
    QPushButton &button() const { return *m_button; }

signals:
    void undoRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    QString m_text;
    QWidget *m_content;
    QLabel *m_label;
    QPushButton *m_button;
};

} // namespace nimbrelle
