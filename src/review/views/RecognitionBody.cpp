#include "review/views/RecognitionBody.h"

#include "frame/WordPattern.h"
#include "platform/Speaker.h"
#include "review/views/AnswerLines.h"
#include "review/views/KeyButton.h"
#include "widgets/Controls.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordparts/WordParts.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double besideWord = 8;
constexpr double lowerThanWord =
    6; // so that the speaker is in line with the small letters, not with the tall ones
constexpr double betweenRatings = 8;

void hideButKeepRoom(QWidget &widget)
{
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
    widget.hide();
}

} // namespace

RecognitionBody::RecognitionBody(const ReviewParts &parts, int width) : QuestionBody(parts, width)
{
    refresh();
}

/// The same places before and after, so that nothing jumps: what is not to be seen yet keeps its place.
void RecognitionBody::fillContent(QVBoxLayout &rows, const WordEntry &live)
{
    const Theme &theme = parts().theme;
    const bool isRevealed = foot() != ReviewScreen::Foot::reveal;
    QWidget *phonetic = live.phonetic.isEmpty() ? nullptr
                                                : makeReadText(theme, u"phonetic"_s, u"音标"_s, live.phonetic,
                                                    {.type = TextType::text, .tone = Tone::ink2});
    QWidget *wordRow = makeWordRow(live, phonetic);
    QWidget *rest =
        phonetic && !phonetic->parentWidget() ? phonetic : nullptr; // too wide for the line of the word
    add(rows, wordRow, 0);
    add(rows, makeMeaning(live, rest), 8);
    if (phonetic && !isRevealed)
        hideButKeepRoom(*phonetic);
    add(rows, makeSentence(live), 20);
    if (!isRevealed)
        return;
    add(rows, makeTranslation(theme, question(), TextType::text), 3);
    add(rows, makeMnemonic(theme, live), 14);
}

QWidget *RecognitionBody::makeWordRow(const WordEntry &live, QWidget *phonetic) const
{
    const Theme &theme = parts().theme;
    const int gap = theme.points(besideWord);
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, gap);
    auto *word = makeReadText(theme, u"headword"_s, u"单词"_s, live.headword, {.type = TextType::display});
    auto *speak = makeIconButton(theme, u"speakWord"_s, u"朗读"_s, Icon::speaker, 20);
    speak->setFocusPolicy(Qt::TabFocus);
    connect(
        speak, &QPushButton::clicked, this, [this, said = live.headword] { parts().speaker.speak(said); });
    int left = contentWidth() - speak->maximumWidth() - gap;
    word->setFixedWidth(std::min(word->naturalWidth(), left));
    left -= word->maximumWidth() + gap;
    row->addWidget(word);
    auto *behind = new QWidget;
    behind->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    auto *low = bareLayout<QHBoxLayout>(behind, gap);
    low->setContentsMargins(0, theme.points(lowerThanWord), 0, 0);
    low->addWidget(speak);
    row->addWidget(behind, 0, Qt::AlignVCenter);
    auto *sound = qobject_cast<ReadText *>(phonetic);
    if (sound && sound->naturalWidth() <= left) {
        sound->setFixedWidth(sound->naturalWidth());
        low->addWidget(sound, 0, Qt::AlignVCenter);
    }
    row->addStretch();
    return holder;
}

/// Before the answer, a slip as high as what it hides.
QWidget *RecognitionBody::makeMeaning(const WordEntry &live, QWidget *phonetic) const
{
    const Theme &theme = parts().theme;
    auto *holder = new QWidget;
    auto *cell = bareLayout<QGridLayout>(holder, 0);
    cell->setRowMinimumHeight(0, theme.points(stripHeight));
    auto *meaning = new QWidget;
    auto *rows = bareLayout<QVBoxLayout>(meaning, 0);
    if (phonetic)
        rows->addWidget(phonetic);
    rows->addWidget(makeMeaningRow(
        theme, live, {.type = TextType::heading, .weight = QFont::Medium, .pitch = 30}, contentWidth()));
    if (QWidget *definition = makeDefinition(theme, live, TextType::text))
        rows->addWidget(definition);
    if (QWidget *base = makeBaseRow(theme, question()))
        rows->addWidget(base);
    cell->addWidget(meaning, 0, 0, Qt::AlignTop);
    if (foot() != ReviewScreen::Foot::reveal)
        return holder;
    hideButKeepRoom(*meaning);
    QFrame *slip = makeArea(u"slip"_s);
    slip->setObjectName(u"slip"_s);
    auto *label = makeLabel(theme, u"按空格看答案"_s, TextType::text, Tone::ink2);
    label->setObjectName(u"revealHint"_s);
    bareLayout<QHBoxLayout>(slip, 0)->addWidget(label, 0, Qt::AlignCenter);
    cell->addWidget(slip, 0, 0);
    return holder;
}

QWidget *RecognitionBody::makeSentence(const WordEntry &live) const
{
    if (!question().sentence)
        return nullptr;
    const QString &sentence = *question().sentence;
    auto *text = makeReadText(parts().theme, u"sentence"_s, u"原句"_s, sentence,
        {.type = TextType::meaning, .weight = QFont::Normal, .pitch = 25});
    for (const TextRange &range : WordPattern::allOccurrences(sentence, live.formTexts()))
        text->mark(range.start, range.length);
    return text;
}

QWidget *RecognitionBody::makeFoot(ReviewScreen::Foot foot)
{
    m_ratings = nullptr;
    ReviewSession &session = parts().session;
    if (foot == ReviewScreen::Foot::rate)
        return makeRatings();
    const bool isAsking = foot == ReviewScreen::Foot::reveal;
    auto *button = isAsking ? new KeyButton(parts().theme, u"reveal"_s, u"看答案"_s, u"空格"_s)
                            : new KeyButton(parts().theme, u"next"_s, u"下一题"_s, u"回车"_s);
    connect(
        button, &QPushButton::clicked, &session, isAsking ? &ReviewSession::reveal : &ReviewSession::next);
    return button;
}

QWidget *RecognitionBody::makeRatings()
{
    auto *holder = new QWidget;
    m_ratings = bareLayout<QGridLayout>(holder, parts().theme.points(betweenRatings));
    for (const Rating rating : ReviewScreen::allRatings) {
        const qint64 key = rawValue(rating);
        auto *button = new KeyButton(parts().theme, u"rate%1"_s.arg(key), ReviewScreen::buttonLabel(rating),
            QString::number(key), KeyButton::Kind::outlined, KeyButton::Cap::below);
        button->setMinimumWidth(1); // the window may be narrower than four of them
        connect(button, &QPushButton::clicked, &parts().session,
            [&session = parts().session, rating] { session.rate(rating); });
        m_ratings->addWidget(button, 0, static_cast<int>(key) - 1);
    }
    arrangeRatings();
    return holder;
}

/// Four beside one another, or two by two where a label would not fit.
void RecognitionBody::arrangeRatings()
{
    if (!m_ratings)
        return;
    QList<KeyButton *> buttons;
    while (QLayoutItem *item = m_ratings->takeAt(0)) {
        buttons.append(qobject_cast<KeyButton *>(item->widget()));
        delete item;
    }
    int widest = 0;
    for (const KeyButton *button : std::as_const(buttons))
        widest = std::max(widest, button->neededWidth());
    const int count = static_cast<int>(buttons.size());
    const int needed = count * widest + (count - 1) * m_ratings->spacing();
    const int columns = needed <= contentWidth() ? count : 2;
    for (int i = 0; i < count; ++i)
        m_ratings->addWidget(buttons[i], i / columns, i % columns);
    for (int i = 0; i < count; ++i)
        m_ratings->setColumnStretch(i, i < columns ? 1 : 0);
}

void RecognitionBody::contentWidthChanged()
{
    arrangeRatings();
}

} // namespace nimbrelle
