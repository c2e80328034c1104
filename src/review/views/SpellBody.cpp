#include "review/views/SpellBody.h"

#include "frame/Clock.h"
#include "platform/Speaker.h"
#include "review/views/AnswerField.h"
#include "review/views/AnswerLines.h"
#include "review/views/KeyButton.h"
#include "review/views/SlotsView.h"
#include "widgets/Controls.h"
#include "widgets/FocusSoon.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordparts/WordParts.h"

#include <QCoreApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QSet>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double aboveField = 10;
constexpr double belowField = 8;

/// What is typed, taken back or submitted, and no key of the window's or of the desktop's.
bool isForField(const QKeyEvent &event)
{
    static const QSet<int> keys{Qt::Key_Return, Qt::Key_Enter, Qt::Key_Backspace};
    const bool isCommand = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return !isCommand
        && (keys.contains(event.key()) || (!event.text().isEmpty() && event.text().front().isPrint()));
}

} // namespace

SpellBody::SpellBody(const ReviewParts &parts, int width) : QuestionBody(parts, width)
{
    refresh();
    if (mode() == SpellMode::copy)
        hideWordLater(m_peek.renew());
}

SpellMode SpellBody::mode() const
{
    return question().mode().value_or(SpellMode::copy);
}

void SpellBody::fillContent(QVBoxLayout &rows, const WordEntry &live)
{
    m_word = nullptr;
    if (foot() == ReviewScreen::Foot::type)
        fillHint(rows, live);
    else
        fillResult(rows, live);
}

void SpellBody::fillHint(QVBoxLayout &rows, const WordEntry &live)
{
    const auto addMeaning = [&] {
        add(rows,
            makeReadText(parts().theme, u"meaning"_s, u"意思"_s, live.meaningZh,
                {.type = TextType::heading, .weight = QFont::Medium, .pitch = 30}),
            6);
    };
    switch (mode()) {
    case SpellMode::copy:
        m_word = makeLarge(u"word"_s, {}, Tone::ink);
        showTheWord();
        add(rows, m_word, 6);
        return addMeaning();
    case SpellMode::fill:
    case SpellMode::chunks:
        add(rows, makeScaffold(), 6);
        return addMeaning();
    case SpellMode::full:
        return fillFullHint(rows, live);
    case SpellMode::dictation:
        return add(rows, makeSpeakAgain(), 6);
    }
}

void SpellBody::fillFullHint(QVBoxLayout &rows, const WordEntry &live) const
{
    const Theme &theme = parts().theme;
    if (question().clozeSentence)
        add(rows,
            makeReadText(theme, u"cloze"_s, u"填空"_s, *question().clozeSentence,
                {.type = TextType::meaning, .weight = QFont::Normal, .pitch = 25}),
            6);
    add(rows,
        makeReadText(theme, u"initial"_s, u"提示"_s, ReviewScreen::initialLine(question()),
            {.type = TextType::text, .tone = Tone::ink2}),
        8);
    add(rows,
        makeReadText(theme, u"meaning"_s, u"意思"_s, live.meaningZh,
            {.type = TextType::heading, .weight = QFont::Medium, .pitch = 30}),
        2);
    if (const auto form = ReviewScreen::formLine(question()))
        add(rows,
            makeReadText(
                theme, u"formHint"_s, u"词形"_s, *form, {.type = TextType::small, .tone = Tone::orangeText}),
            2);
}

ReadText *SpellBody::makeLarge(const QString &name, const QString &text, Tone tone) const
{
    auto *large =
        makeReadText(parts().theme, name, u"要拼的词"_s, {}, {.type = TextType::scaffold, .tone = tone});
    large->setRuns({{text, {.code = true}}});
    return large;
}

/// In chunks, what is given is grey, and the gap stands out.
QWidget *SpellBody::makeScaffold() const
{
    const QString text = question().scaffold.value_or(QString());
    if (mode() != SpellMode::chunks)
        return makeLarge(u"scaffold"_s, text, Tone::ink);
    auto *scaffold = makeLarge(u"scaffold"_s, text, Tone::ink2);
    const qsizetype gap = text.indexOf(u'_');
    if (gap >= 0)
        scaffold->mark(gap, text.lastIndexOf(u'_') + 1 - gap);
    return scaffold;
}

/// Dots in its place are as wide as its letters.
void SpellBody::showTheWord()
{
    const QString &word = question().answer;
    if (m_word)
        m_word->setRuns({{m_showWord ? word : ReviewScreen::hiddenWord(word), {.code = true}}});
}

QCoro::Task<> SpellBody::hideWordLater(std::stop_token stop)
{
    co_await parts().clock.sleep(copyPeek, stop);
    if (!stop.stop_requested())
        hideWord();
}

void SpellBody::hideWord()
{
    if (!std::exchange(m_showWord, false))
        return;
    m_peek.cancel();
    showTheWord();
}

QWidget *SpellBody::makeSpeakAgain()
{
    const Theme &theme = parts().theme;
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(10));
    auto *button =
        makeButton(theme, u"speakAgain"_s, u"再听一遍"_s, {.icon = Icon::speaker, .type = TextType::text});
    button->setFixedHeight(theme.points(40));
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleDescription(u"Ctrl+R"_s);
    connect(button, &QPushButton::clicked, this, &SpellBody::speakAgain);
    row->addWidget(button);
    auto *key = makeLabel(theme, u"Ctrl+R"_s, TextType::tiny, Tone::ink3);
    key->setObjectName(u"speakAgainKey"_s);
    row->addWidget(key);
    row->addStretch();
    return holder;
}

void SpellBody::speakAgain()
{
    if (mode() == SpellMode::dictation && foot() == ReviewScreen::Foot::type)
        parts().speaker.speak(question().answer);
}

void SpellBody::fillResult(QVBoxLayout &rows, const WordEntry &live) const
{
    const Theme &theme = parts().theme;
    const auto *revealed = std::get_if<ReviewSession::Revealed>(&parts().session.phase());
    const bool isMissed = revealed && revealed->rating == Rating::again;
    if (revealed)
        add(rows, makeVerdict(theme, *revealed), 0);
    add(rows, makeHeadRow(live), 8);
    add(rows, makeMeaningRow(theme, live, {.type = TextType::meaning}, contentWidth()), 0);
    QWidget *aid = makeMnemonic(theme, live);
    if (isMissed) // where it is needed, the copy leaves little room
        add(rows, aid, 6);
    add(rows, makeDefinition(theme, live, TextType::small), isMissed && aid ? 6 : 2);
    add(rows, makeBaseRow(theme, question()), 2);
    add(rows, makeSentence(live), 10);
    if (!isMissed)
        add(rows, aid, 10);
}

QWidget *SpellBody::makeHeadRow(const WordEntry &live) const
{
    const Theme &theme = parts().theme;
    const int gap = theme.points(8);
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, 0);
    auto *speak = makeIconButton(theme, u"speakWord"_s, u"朗读"_s, Icon::speaker, 18);
    speak->setFocusPolicy(Qt::TabFocus);
    connect(
        speak, &QPushButton::clicked, this, [this, said = live.headword] { parts().speaker.speak(said); });
    int left = contentWidth() - speak->maximumWidth() - gap;
    auto *word = makeReadText(theme, u"headword"_s, u"单词"_s, live.headword, {.type = TextType::headword});
    word->setFixedWidth(std::min(word->naturalWidth(), left));
    left -= word->maximumWidth() + gap;
    row->addWidget(word);
    auto *phonetic = makeReadText(theme, u"phonetic"_s, u"音标"_s, live.phonetic,
        {.type = TextType::small, .tone = Tone::ink2, .line = TextType::headword});
    if (!live.phonetic.isEmpty() && phonetic->naturalWidth() <= left) {
        phonetic->setFixedWidth(phonetic->naturalWidth());
        row->addSpacing(gap);
        row->addWidget(phonetic);
    } else {
        delete phonetic;
    }
    row->addSpacing(theme.points(4)); // the button has padding of its own
    row->addWidget(speak);
    row->addStretch();
    return holder;
}

QWidget *SpellBody::makeSentence(const WordEntry &live) const
{
    const Theme &theme = parts().theme;
    if (!question().sentence)
        return nullptr;
    auto *quote = makeQuote(theme, *question().sentence, live.formTexts(), {});
    if (QWidget *translation = makeTranslation(theme, question(), TextType::small)) {
        auto *holder = new QWidget;
        auto *row = bareLayout<QHBoxLayout>(holder, theme.points(12));
        QFrame *rule = makeArea(u"rule"_s);
        rule->setFixedWidth(theme.points(2));
        row->addWidget(rule);
        auto *below = bareLayout<QVBoxLayout>(nullptr, 0);
        below->addSpacing(theme.points(3));
        below->addWidget(translation);
        row->addLayout(below, 1);
        auto *both = new QWidget;
        auto *rows = bareLayout<QVBoxLayout>(both, 0);
        rows->addWidget(quote);
        rows->addWidget(holder);
        return both;
    }
    return quote;
}

QWidget *SpellBody::makeFoot(ReviewScreen::Foot foot)
{
    m_field = nullptr;
    m_slots = nullptr;
    if (foot == ReviewScreen::Foot::type)
        return makeTyping();
    return foot == ReviewScreen::Foot::copy ? makeCopying() : makeProceeding();
}

void SpellBody::addSlots(QBoxLayout &rows)
{
    m_slots = new SlotsView(parts().theme, question().answer);
    m_slots->setAvailableWidth(contentWidth());
    rows.addWidget(m_slots);
    rows.addSpacing(parts().theme.points(aboveField));
}

QWidget *SpellBody::makeTyping()
{
    const Theme &theme = parts().theme;
    auto *holder = new QWidget;
    auto *rows = bareLayout<QVBoxLayout>(holder, 0);
    addSlots(*rows);
    m_field = makeTypingField();
    auto *line = bareLayout<QHBoxLayout>(nullptr, theme.points(8));
    line->addWidget(m_field, 1);
    auto *giveUp =
        makeButton(theme, u"giveUp"_s, u"不会"_s, {.kind = ButtonKind::soft, .type = TextType::text});
    giveUp->setProperty("quiet", true);
    giveUp->setToolTip(u"直接看答案"_s);
    giveUp->setFixedSize(theme.points(64), m_field->maximumHeight());
    giveUp->setFocusPolicy(Qt::TabFocus);
    connect(giveUp, &QPushButton::clicked, &parts().session, [&session = parts().session] {
        session.setInput({});
        session.submit();
    });
    line->addWidget(giveUp);
    rows->addLayout(line);
    rows->addSpacing(theme.points(belowField));
    auto *keys =
        makeLabel(theme, u"回车提交 · Tab 送一个字母 · 空着提交 = 不会"_s, TextType::small, Tone::ink2);
    keys->setObjectName(u"keys"_s);
    rows->addWidget(keys);
    focusField();
    return holder;
}

AnswerField *SpellBody::makeTypingField()
{
    ReviewSession &session = parts().session;
    auto *field = new AnswerField(
        parts().theme, u"answerField"_s, u"拼写"_s, u"在这里输入"_s, AnswerField::Tab::givesLetter);
    connect(field, &QLineEdit::textEdited, &session, &ReviewSession::setInput);
    connect(field, &AnswerField::submitted, &session, &ReviewSession::submit);
    connect(field, &AnswerField::letterWanted, &session, &ReviewSession::giveLetter);
    return field;
}

/// As makeTyping(), with an invitation above and nothing below.
QWidget *SpellBody::makeCopying()
{
    const Theme &theme = parts().theme;
    auto *holder = new QWidget;
    auto *rows = bareLayout<QVBoxLayout>(holder, 0);
    auto *invitation = makeReadText(theme, u"invitation"_s, u"照着打一遍"_s, {}, {.type = TextType::text});
    invitation->setRuns(
        {{u"照着打一遍 "_s, {}}, {question().answer, {.bold = true}}, {u"（可以跳过）"_s, {}}});
    rows->addWidget(invitation);
    rows->addSpacing(theme.points(belowField));
    addSlots(*rows);
    m_field = makeCopyField();
    rows->addWidget(m_field);
    rows->addSpacing(theme.points(belowField) + theme.points(Theme::pitch(TextType::small)));
    focusField();
    return holder;
}

AnswerField *SpellBody::makeCopyField()
{
    ReviewSession &session = parts().session;
    auto *field =
        new AnswerField(parts().theme, u"copyField"_s, u"照着打一遍"_s, {}, AnswerField::Tab::movesOn);
    connect(field, &QLineEdit::textEdited, &session, &ReviewSession::setCopyInput);
    connect(field, &AnswerField::submitted, &session, &ReviewSession::next);
    return field;
}

QWidget *SpellBody::makeProceeding()
{
    m_focus.cancel();
    auto *button = new KeyButton(parts().theme, u"proceed"_s, u"按回车继续"_s, {});
    connect(button, &QPushButton::clicked, &parts().session, &ReviewSession::next);
    return button;
}

void SpellBody::focusField()
{
    const QPointer<AnswerField> field = m_field;
    focusSoon(
        parts().clock,
        [field] {
            if (field)
                field->setFocus(Qt::OtherFocusReason);
        },
        [field] { return !field || field->hasFocus(); }, m_focus.renew());
}

void SpellBody::focusInput()
{
    if (m_field)
        m_field->setFocus(Qt::OtherFocusReason);
}

bool SpellBody::handleKey(const QKeyEvent &event)
{
    if (!m_field || window()->focusWidget() == m_field || !isForField(event))
        return false;
    focusInput();
    QKeyEvent typed(QEvent::KeyPress, event.key(), event.modifiers(), event.text(), event.isAutoRepeat());
    QCoreApplication::sendEvent(m_field, &typed);
    return true;
}

void SpellBody::refreshInputs()
{
    if (!m_field)
        return;
    const bool isCopying = foot() == ReviewScreen::Foot::copy;
    const QString &text = isCopying ? parts().session.copyInput() : parts().session.input();
    if (m_field->text() != text)
        m_field->setText(text);
    m_slots->setTyped(text);
    if (!isCopying && !text.isEmpty())
        hideWord();
}

void SpellBody::contentWidthChanged()
{
    if (m_slots)
        m_slots->setAvailableWidth(contentWidth());
}

} // namespace nimbrelle
