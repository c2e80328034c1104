#pragma once

#include "widgets/ReadText.h"

#include <QUuid>
#include <QWidget>

class QFrame;

namespace nimbrelle {

/// One message of a conversation as it is shown.
struct TalkMessage {
    QUuid id;
    bool isLearner = false;
    QString text;
};

/// The row of one message. Widths and heights in device-independent pixels.
class TalkRow : public QWidget {
    Q_OBJECT

public:
    virtual void setText(const QString &text) = 0;
    virtual int heightFor(int width) const = 0;
};

/// What the learner said, in a bubble at the right.
class LearnerRow final : public TalkRow {
    Q_OBJECT

public:
    explicit LearnerRow(const Theme &theme);

    void setText(const QString &text) override;
    int heightFor(int width) const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int bubbleWidth(int width) const;

    const Theme &m_theme;
    QFrame *m_bubble;
    ReadText *m_text;
    int m_naturalWidth = 0; // of the bubble with its text in one line
};

/// What the AI said, across the column. Without a text it shows that one is waited for.
class AnswerRow final : public TalkRow {
    Q_OBJECT

public:
    AnswerRow(const Theme &theme, const QString &waiting);

    void setText(const QString &text) override;
    int heightFor(int width) const override;
    /// What is shown below the text, in place of what was before; null for nothing.
    void setFooter(QWidget *footer);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    const Theme &m_theme;
    QWidget *m_waiting;
    ReadText *m_text;
    QWidget *m_footer = nullptr;
};

} // namespace nimbrelle
