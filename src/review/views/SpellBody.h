#pragma once

#include "frame/TaskSlot.h"
#include "review/views/QuestionBody.h"

#include <QCoro/QCoroTask>

class QBoxLayout;

namespace nimbrelle {

class AnswerField;
class ReadText;
class SlotsView;
enum class Tone;

/// The learner types the word, sees what came of it, and copies it after a mistake. The boxes and the field
/// of the copy are where those of the answer were.
class SpellBody final : public QuestionBody {
    Q_OBJECT

public:
    /// How long the word can be seen before it is to be written from memory.
    static constexpr std::chrono::milliseconds copyPeek{2500};

    SpellBody(const ReviewParts &parts, int width);

    /// Says the answer, where that is what is asked; else does nothing.
    void speakAgain();
    void focusInput() override;
    bool handleKey(const QKeyEvent &event) override;

protected:
    void fillContent(QVBoxLayout &rows, const WordEntry &live) override;
    QWidget *makeFoot(ReviewScreen::Foot foot) override;
    void refreshInputs() override;
    void contentWidthChanged() override;

private:
    SpellMode mode() const;
    void fillHint(QVBoxLayout &rows, const WordEntry &live);
    void fillFullHint(QVBoxLayout &rows, const WordEntry &live) const;
    void fillResult(QVBoxLayout &rows, const WordEntry &live) const;
    QWidget *makeHeadRow(const WordEntry &live) const;
    QWidget *makeSentence(const WordEntry &live) const;
    QWidget *makeSpeakAgain();
    ReadText *makeLarge(const QString &name, const QString &text, Tone tone) const;
    QWidget *makeScaffold() const;
    QWidget *makeTyping();
    QWidget *makeCopying();
    QWidget *makeProceeding();
    void addSlots(QBoxLayout &rows);
    AnswerField *makeTypingField();
    AnswerField *makeCopyField();
    void focusField();
    void showTheWord();
    QCoro::Task<> hideWordLater(std::stop_token stop);
    void hideWord();

    bool m_showWord = true;
    ReadText *m_word = nullptr;
    SlotsView *m_slots = nullptr;
    AnswerField *m_field = nullptr;
    TaskSlot m_peek;
    TaskSlot m_focus;
};

} // namespace nimbrelle
