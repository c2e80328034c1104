#pragma once

#include "wordbook/WordFacts.h"
#include "wordbook/views/WordbookParts.h"

#include <QWidget>

class QFrame;
class QVBoxLayout;

namespace nimbrelle {

/// The other words of the word's family that are in the notebook.
class FamilySection : public QWidget {
    Q_OBJECT

public:
    FamilySection(const WordbookParts &parts, const WordFacts &facts, QWidget *parent);

signals:
    void wordChosen(const QUuid &id);
};

/// The word's forms: those met in sentences, and those still to be met.
class FormGallery : public QWidget {
    Q_OBJECT

public:
    FormGallery(const WordbookParts &parts, const WordEntry &entry, QWidget *parent);

private:
    QFrame *makeCell(const Theme &theme, const FormSlot &slot);
};

/// All that the notebook holds of one word.
class WordDetail : public QWidget {
    Q_OBJECT

public:
    WordDetail(const WordbookParts &parts, const WordFacts &facts, QWidget *parent);

signals:
    void wordChosen(const QUuid &id);

private:
    void addHead();
    void addSections();
    QWidget *makeExample(const Example &example);
    QWidget *makeMnemonic(const QString &text);

    const WordbookParts m_parts;
    const Theme &m_theme;
    const WordFacts m_facts;
    QVBoxLayout *m_rows;
};

} // namespace nimbrelle
