#pragma once

#include "wordbook/WordFacts.h"
#include "wordbook/views/NotebookParts.h"

#include <QFrame>

class QMenu;

namespace nimbrelle {

/// The ways to change a word's stage by hand, as buttons.
class StageActions : public QWidget {
    Q_OBJECT

public:
    StageActions(const NotebookParts &parts, const WordFacts &facts);
};

/// Where the word stands in learning, with the same ways in a menu.
class StageBar : public QFrame {
    Q_OBJECT

public:
    StageBar(const NotebookParts &parts, const WordFacts &facts);

private:
    QWidget *makeState(const WordFacts &facts) const;
    QPushButton *makeAdjustButton(const WordFacts &facts);

    const NotebookParts m_parts;
};

} // namespace nimbrelle
