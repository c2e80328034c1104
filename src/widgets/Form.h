#pragma once

#include "widgets/Controls.h"

#include <QFrame>

class QAbstractButton;
class QHBoxLayout;
class QLabel;
class QVBoxLayout;

/// What a page of settings is made of: headings on the page's ground, and groups of rows.
namespace nimbrelle {

class ReadText;

/// A label at the left, a control at the right edge, and whatever else below the two.
class FormRow : public QWidget {
    Q_OBJECT

public:
    explicit FormRow(const Theme &theme, QWidget *parent = nullptr);
    FormRow(const Theme &theme, const QString &label, QWidget *control);

    void setLabel(const QString &label);
    QLabel *label() const { return m_label; }
    /// The line of label and control; further controls go to its end.
    QHBoxLayout *line() const { return m_line; }

    /// Below the line.
    void add(QWidget *widget);
    ReadText *addNote(const QString &name, const QString &text);
    ReadText *addNote(const QString &name, const QString &text, Tone tone);

    /// A click anywhere on the label is one on this.
    void setTarget(QAbstractButton *target) { m_target = target; }
    /// With a hairline above.
    void setRuled(bool ruled);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    const Theme &m_theme;
    QVBoxLayout *m_column;
    QHBoxLayout *m_line;
    QLabel *m_label = nullptr;
    QFrame *m_rule;
    QAbstractButton *m_target = nullptr;
};

/// Rows on one ground. A row that is hidden takes its hairline along.
class FormGroup : public QFrame {
    Q_OBJECT

public:
    explicit FormGroup(const Theme &theme, QWidget *parent = nullptr);

    void add(FormRow *row);
    void clear();

private:
    QVBoxLayout *m_column;
    int m_rows = 0;
};

/// A title that opens and closes what is below it.
class Fold : public QWidget {
    Q_OBJECT

public:
    /// `name` is the title's.
    Fold(const Theme &theme, const QString &name, const QString &title, QWidget *body,
        QWidget *parent = nullptr);

    bool isOpen() const { return m_isOpen; }
    void setOpen(bool open);

signals:
    void toggled(bool open); ///< by the user

private:
    const Theme &m_theme;
    QPushButton *m_title;
    QWidget *m_body;
    bool m_isOpen = false;
};

/// May take more than one line.
ReadText *makeHeading(const Theme &theme, const QString &text);

/// An icon and a text that may take more than one line, in one colour.
QWidget *makeMessage(const Theme &theme, const QString &name, Icon icon, const QString &text, Tone tone);

/// Text in a line of its own, small and of the second tone.
ReadText *makeNote(const Theme &theme, const QString &name, const QString &text, Tone tone = Tone::ink2);

/// A heading and its group, as one part of a page.
QWidget *makeSection(const Theme &theme, const QString &heading, QWidget *group);

} // namespace nimbrelle
