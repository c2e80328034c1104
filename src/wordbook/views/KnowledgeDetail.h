#pragma once

#include "wordbook/WordFacts.h"
#include "wordbook/views/WordbookParts.h"

#include <QWidget>

namespace nimbrelle {

/// One grammar point, and the sentences in which it was met.
class GrammarDetail : public QWidget {
    Q_OBJECT

public:
    GrammarDetail(const WordbookParts &parts, const GrammarFacts &facts);

private:
    QWidget *makeEncounter(const WordbookParts &parts, const GrammarEncounter &met);
};

/// One affix, and the words in which it was met.
class AffixDetail : public QWidget {
    Q_OBJECT

public:
    AffixDetail(const WordbookParts &parts, const AffixFacts &facts);
};

} // namespace nimbrelle
