#pragma once

#include "card/CardState.h"
#include "card/views/CardParts.h"
#include "notebook/WordEntry.h"
#include "widgets/Theme.h"

#include <QWidget>

#include <functional>
#include <optional>

class QHBoxLayout;
class QPushButton;
class QVBoxLayout;

namespace nimbrelle {

/// An explained word: what it means here on top, everything else behind a fold.
class WordCard : public QWidget {
    Q_OBJECT

public:
    enum class Fold { closed, open };

    /// `width` is the card's, in device-independent pixels.
    WordCard(const CardParts &parts, const WordCardData &data, Fold fold, int width);

    /// The button of the fold, which stays in view below the rest.
    QWidget *makeFooter();

signals:
    void foldPressed();

private:
    void addHead();
    QWidget *makeSound(std::optional<TextType> line);
    QWidget *makeCorner();
    QWidget *makeSaveControl();
    QPushButton *makeSaveButton() const;
    QWidget *makeSavedLabel() const;
    void addMeaning();
    QWidget *makeMeaningRow() const;
    QWidget *makeRecallPrompt();
    QWidget *makeRecallRating();
    QWidget *makeVerdict() const;
    void addSentence();
    void addDetails();
    void addNotes();
    void addActions();
    QList<QWidget *> makeActions();
    QWidget *makeWantToggle(const WordEntry &entry);

    void add(QWidget *widget, double gap);
    QString sentence() const { return m_data.explanation.sentence.value_or(QString()); }

    const CardParts m_parts;
    const Theme &m_theme;
    const WordCardData m_data;
    const Fold m_fold;
    const int m_contentWidth; // between the margins
    QVBoxLayout *m_rows;
};

} // namespace nimbrelle
