#pragma once

#include "wordbook/WordFacts.h"
#include "wordbook/views/WordbookParts.h"

#include <QFrame>

class QPushButton;

namespace nimbrelle {

/// The actions that change a word's stage, as buttons.
class StageActions : public QWidget {
    Q_OBJECT

public:
    StageActions(const WordbookParts &parts, const WordFacts &facts, QWidget *parent);
};

/// The word's stage, with the same actions in a menu.
class StageBar : public QFrame {
    Q_OBJECT

public:
    StageBar(const WordbookParts &parts, const WordFacts &facts, QWidget *parent);

private:
    QWidget *makeState(const WordFacts &facts);
    QPushButton *makeAdjustButton();
    void showAdjustMenu();

    const WordbookParts m_parts;
    const QList<StageAction> m_actions;
    const QUuid m_id; ///< of the word
    QPushButton *m_adjustButton;
};

} // namespace nimbrelle
