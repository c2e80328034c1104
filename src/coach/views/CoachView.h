#pragma once

#include "coach/CoachQuestion.h"
#include "coach/CoachSession.h"
#include "widgets/TalkView.h"

class QLabel;
class QPushButton;

namespace nimbrelle {

class CoachFacts;

/// The coach's window: today's briefing and what was said after it. Whoever shows it opens the
/// session's day first.
class CoachView : public TalkView {
    Q_OBJECT

public:
    CoachView(const Theme &theme, CoachSession &session, const CoachFacts &facts, const Clock &clock,
        QWidget *parent = nullptr);

signals:
    void reviewRequested();

protected:
    void showEvent(QShowEvent *event) override;
    bool event(QEvent *event) override;

    void addHeader(QVBoxLayout &rows) override;
    void addChips() override;
    void refresh() override;

private:
    void offerQuestions();
    QPushButton *makeChip(CoachQuestion question);
    QPushButton *makeReviewButton();
    QPushButton *makeRetry();

    CoachSession &m_session;
    const CoachFacts &m_facts;
    const Clock &m_clock;
    QLabel *m_date = nullptr;
    QPushButton *m_rewrite = nullptr;
    QList<CoachQuestion> m_offered;
};

} // namespace nimbrelle
