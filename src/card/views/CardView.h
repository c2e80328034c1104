#pragma once

#include "card/views/CardParts.h"
#include "card/views/WordCard.h"

#include <QWidget>

#include <memory>

class QScrollArea;

namespace nimbrelle {

/// What the card shows, in every state of its model. It redraws when the model, the notebook or the theme
/// changes, and none of its controls takes the focus.
class CardView : public QWidget {
    Q_OBJECT

public:
    explicit CardView(const CardParts &parts, QWidget *parent = nullptr);

    /// The widest and highest that the card may be, in device-independent pixels.
    void setLimits(QSize limits);

    /// The size that the content needs within the limits; empty when there is none.
    QSize fittingSize() const;
    /// Of the frame round this content, in device-independent pixels.
    double cornerRadius() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void rebuild();
    void rebuildDetails();
    CardPage makePage();
    CardPage makeWordPage(const WordCardData &data);
    void showPage(const CardPage &page);
    void removePage();
    void arrange();
    int footerHeight() const;
    bool isShowingWord() const;

    const CardParts m_parts;
    QSize m_limits{16777215, 16777215};
    WordCard::Fold m_fold = WordCard::Fold::closed;
    CardPage m_page;
    QScrollArea *m_scroll = nullptr;
};

} // namespace nimbrelle
