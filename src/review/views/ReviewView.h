#pragma once

#include "review/ReviewScreen.h"
#include "review/views/ReviewParts.h"

#include <QWidget>

#include <variant>

class QLabel;
class QVBoxLayout;

namespace nimbrelle {

class QuestionBody;

/// The review window's contents: one round of the session, question by question. The keys that its buttons
/// show work wherever the focus is.
class ReviewView : public QWidget {
    Q_OBJECT

public:
    explicit ReviewView(const ReviewParts &parts, QWidget *parent = nullptr);

signals:
    void closed(); ///< the learner is done; the window is to be closed

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using End = std::variant<std::monostate, ReviewScreen::Summary, ReviewScreen::EmptyRound>;

    void rebuild();
    void refresh();
    void showQuestion();
    void showEnd();
    End end() const;
    void setPage(QWidget *page);
    QWidget *makeQuestionPage();
    QWidget *makeTopBar();
    QWidget *makeHeader();
    void connectEnd(class EndPage &page);
    void takeFocus();
    bool scroll(int key);

    const ReviewParts m_parts;
    QWidget *m_page = nullptr;
    QuestionBody *m_body = nullptr; // of a page with a question
    class ProgressLine *m_progress = nullptr;
    QLabel *m_progressText = nullptr;
    End m_end;
};

} // namespace nimbrelle
