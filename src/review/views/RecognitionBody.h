#pragma once

#include "review/views/QuestionBody.h"

class QGridLayout;

namespace nimbrelle {

/// The learner sees the word, thinks, looks, and judges.
class RecognitionBody final : public QuestionBody {
    Q_OBJECT

public:
    RecognitionBody(const ReviewParts &parts, int width);

protected:
    void fillContent(QVBoxLayout &rows, const WordEntry &live) override;
    QWidget *makeFoot(ReviewScreen::Foot foot) override;
    void contentWidthChanged() override;

private:
    QWidget *makeWordRow(const WordEntry &live, QWidget *phonetic) const;
    QWidget *makeMeaning(const WordEntry &live, QWidget *phonetic) const;
    QWidget *makeSentence(const WordEntry &live) const;
    QWidget *makeRatings();
    void arrangeRatings();

    QGridLayout *m_ratings = nullptr;
};

} // namespace nimbrelle
