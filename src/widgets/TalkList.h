#pragma once

#include "widgets/TalkRows.h"

#include <QScrollArea>

#include <vector>

class QLabel;

namespace nimbrelle {

/// The messages of a conversation below one another. A message that grows moves nothing above it.
class TalkList : public QScrollArea {
    Q_OBJECT

public:
    /// What is scrolled into view: the newest text as it grows, unless the user has scrolled away from it, or
    /// a new question, to the top, so that its answer is read from the start.
    enum class Follow { newest, question };

    struct Look {
        Follow follow = Follow::newest;
        double margin = 20; ///< left and right, in points
        double above = 14; ///< the first row, in points
        QString waiting; ///< shown for an answer without text
        QString hint; ///< shown while there are no messages
    };

    TalkList(const Theme &theme, const Look &look);

    /// Rows of messages that stay are kept; messages are told apart by their ids.
    void setMessages(const QList<TalkMessage> &messages);
    void grow(const TalkMessage &message);
    /// What is shown below an answer; takes the widget over. Null for none.
    void setFooter(const QUuid &id, QWidget *footer);
    /// Up is -1, down is 1.
    void scrollPage(int direction);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Row {
        QUuid id;
        TalkRow *widget = nullptr;
        bool isLearner = false;
    };

    Row *find(const QUuid &id);
    bool removeOthers(const QList<TalkMessage> &messages);
    void append(const TalkMessage &message);
    void noteNewQuestion();
    void arrange();
    int placeRows(int width);
    int spaceBelow(int end) const;
    void restoreScroll(int value);

    const Theme &m_theme;
    const Look m_look;
    QWidget *m_content;
    QLabel *m_hint;
    std::vector<Row> m_rows;
    QUuid m_question; // the one that came to the top
    bool m_isAtEnd = true;
    bool m_isArranging = false;
};

} // namespace nimbrelle
