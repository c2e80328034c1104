#pragma once

#include "wordbook/WordFacts.h"
#include "wordbook/views/NotebookParts.h"

#include <QWidget>

class QFrame;

namespace nimbrelle {

/// The other words of the word's family that are in the notebook.
class FamilySection : public QWidget {
    Q_OBJECT

public:
    FamilySection(const NotebookParts &parts, const WordFacts &facts);

signals:
    void wordChosen(const QUuid &id);
};

/// The word's forms: those met in sentences, and those still to be met.
class FormGallery : public QWidget {
    Q_OBJECT

public:
    FormGallery(const NotebookParts &parts, const WordEntry &entry);

private:
    static QFrame *makeCell(const Theme &theme, const FormSlot &slot);
};

/// All that the notebook holds of one word.
class WordDetail : public QWidget {
    Q_OBJECT

public:
    WordDetail(const NotebookParts &parts, const WordFacts &facts);

signals:
    void wordChosen(const QUuid &id);

private:
    void addHead();
    void addSections();
    QWidget *makeExample(const Example &example);
    QWidget *makeMnemonic(const QString &text) const;

    const NotebookParts m_parts;
    const Theme &m_theme;
    const WordFacts m_facts;
    QVBoxLayout *m_rows;
};

} // namespace nimbrelle
