#pragma once

#include "coach/CoachQuestion.h"
#include "coach/CoachSession.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace nimbrelle {

class CoachFacts;
class TalkDock;
class TalkList;
class Theme;

/// The coach's window: today's briefing and what was said after it. Whoever shows it opens the
/// session's day first.
class CoachView : public QWidget {
    Q_OBJECT

public:
    CoachView(const Theme &theme, CoachSession &session, const CoachFacts &facts, const Clock &clock,
        QWidget *parent = nullptr);

signals:
    void reviewRequested();

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool event(QEvent *event) override;

private:
    void rebuild();
    QWidget *makeHeader();
    void refresh();
    void offerChips();
    void enableChips();
    QPushButton *makeChip(CoachQuestion question);
    QPushButton *makeReviewButton();
    void ask(CoachQuestion question);
    QPushButton *makeRetry();

    const Theme &m_theme;
    CoachSession &m_session;
    const CoachFacts &m_facts;
    const Clock &m_clock;
    QWidget *m_page = nullptr;
    QLabel *m_date = nullptr;
    QPushButton *m_rewrite = nullptr;
    TalkList *m_list = nullptr;
    TalkDock *m_dock = nullptr;
    QList<CoachQuestion> m_offered;
    QList<QPushButton *> m_chips;
};

} // namespace nimbrelle
