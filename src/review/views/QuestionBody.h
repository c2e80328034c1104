#pragma once

#include "review/ReviewScreen.h"
#include "review/views/ReviewParts.h"

#include <QAbstractSlider>

class QKeyEvent;
class QScrollArea;
class QVBoxLayout;

namespace nimbrelle {

/// One question from its asking to its end: what is read, which scrolls if it must, above the
/// outcome and what can be done, which stay in view.
class QuestionBody : public QWidget {
    Q_OBJECT

public:
    /// For the session's current question. `width` in device-independent pixels.
    QuestionBody(const ReviewParts &parts, int width);

    const QUuid &questionId() const { return m_question.id; }
    void scroll(QAbstractSlider::SliderAction action);
    /// After any change of the session.
    void refresh();
    /// Gives the focus to the field of the question, where it has one.
    virtual void focusInput() { }
    /// A key that nobody wanted. True if it was meant for the field.
    virtual bool handleKey(const QKeyEvent &) { return false; }

protected:
    /// Put together anew whenever something that they show has changed.
    virtual void fillContent(QVBoxLayout &rows, const WordEntry &live) = 0;
    virtual QWidget *makeFoot(ReviewScreen::Foot foot) = 0;
    virtual void refreshInputs() { }
    virtual void contentWidthChanged() { }

    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    const ReviewParts &parts() const { return m_parts; }
    const ReviewQuestion &question() const { return m_question; }
    ReviewScreen::Foot foot() const { return m_shown.foot; }
    /// Between the margins.
    int contentWidth() const;
    /// A null widget is left out, with its gap.
    void add(QVBoxLayout &rows, QWidget *widget, double gap) const;

private:
    struct Shown {
        ReviewScreen::Foot foot = ReviewScreen::Foot::reveal;
        ReviewScreen::Banner banner = ReviewScreen::Banner::none;
        WordEntry live;
        ReviewSession::Phase phase;

        bool operator==(const Shown &) const = default;
    };

    void rebuildContent();
    void setSideMargins(const QWidget &content) const;
    void leave(const QWidget *old);
    void replace(QVBoxLayout &place, QWidget *&widget, QWidget *next);

    const ReviewParts m_parts;
    const ReviewQuestion m_question;
    int m_width;
    Shown m_shown;
    QScrollArea *m_scroll;
    QVBoxLayout *m_bannerPlace;
    QVBoxLayout *m_footPlace;
    QWidget *m_banner = nullptr;
    QWidget *m_foot = nullptr;
};

} // namespace nimbrelle
