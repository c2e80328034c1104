#include "card/views/WordCard.h"

#include "card/CardController.h"
#include "card/views/CardLines.h"
#include "notebook/WordStore.h"
#include "platform/Speaker.h"
#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/ReadText.h"
#include "wordparts/WordParts.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <memory>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double soundRowPitch = 22;

QHBoxLayout *rowOf(QWidget *holder, int spacing)
{
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

QWidget *makeMarkedLabel(const Theme &theme, const QString &name, Icon icon, const QString &text, Tone tone)
{
    auto *holder = new QWidget;
    holder->setObjectName(name);
    holder->setAccessibleName(text);
    auto *row = rowOf(holder, theme.points(4));
    row->addWidget(makeIconLabel(theme, icon, 15, theme.colour(tone)));
    row->addWidget(makeLabel(theme, text, TextType::small, tone));
    return holder;
}

bool canBeWanted(const WordEntry &entry)
{
    return entry.stage != Stage::learning && entry.stage != Stage::mastered;
}

} // namespace

WordCard::WordCard(const CardParts &parts, const WordCardData &data, Fold fold, int width)
    : m_parts(parts)
    , m_theme(parts.theme)
    , m_data(data)
    , m_fold(fold)
    , m_contentWidth(width - 2 * parts.theme.points(cardMargin))
    , m_rows(new QVBoxLayout(this))
{
    setObjectName(u"wordCard"_s);
    const int margin = m_theme.points(cardMargin);
    m_rows->setContentsMargins(margin, margin, margin, 0);
    m_rows->setSpacing(0);
    addHead();
    addMeaning();
    addSentence();
    if (m_data.unlock && !m_data.unlock->isEmpty())
        add(makeUnlockBanner(m_theme, *m_data.unlock), 10);
    if (m_fold == Fold::open)
        addDetails();
}

void WordCard::add(QWidget *widget, double gap)
{
    if (!widget)
        return;
    m_rows->addSpacing(m_theme.points(gap));
    m_rows->addWidget(widget);
}

QWidget *WordCard::makeFooter()
{
    auto *footer = new QWidget;
    auto *row = new QHBoxLayout(footer);
    row->setContentsMargins(m_theme.points(cardMargin), m_theme.points(8), m_theme.points(cardMargin),
        m_theme.points(cardMargin));
    auto *fold = makeButton(
        m_theme, u"fold"_s, m_fold == Fold::open ? u"收起"_s : u"更多"_s, {.kind = ButtonKind::link});
    connect(fold, &QPushButton::clicked, this, &WordCard::foldPressed);
    row->addWidget(fold);
    row->addStretch();
    return footer;
}

/// Word, sound and speaker in the row of the badge where they fit, else sound and speaker in a row below.
void WordCard::addHead()
{
    const QString headword = m_data.explanation.headword;
    QWidget *sound = makeSound(TextType::headword); // on the word's own line
    QWidget *corner = makeCorner();
    const int gap = m_theme.points(8);
    auto *word = makeReadText(m_theme, u"headword"_s, u"单词"_s, headword,
        {.type = typeFitting(m_theme, headword, m_contentWidth - gap - corner->sizeHint().width()),
            .weight = QFont::DemiBold,
            .line = TextType::headword});
    const int needed = word->naturalWidth() + gap + sound->sizeHint().width() + corner->sizeHint().width();

    auto *first = new QWidget;
    auto *top = rowOf(first, 0);
    top->addWidget(word, 1, Qt::AlignTop);
    if (needed <= m_contentWidth) {
        word->setFixedWidth(word->naturalWidth());
        top->setStretchFactor(word, 0);
        top->addSpacing(gap);
        top->addWidget(sound, 0, Qt::AlignTop);
        top->addStretch(1);
    } else {
        top->addSpacing(gap);
    }
    top->addWidget(corner, 0, Qt::AlignTop);
    m_rows->addWidget(first);
    if (needed > m_contentWidth) {
        delete sound;
        add(makeSound(std::nullopt), 0);
    }
}

/// How the word is said, and the button that says it.
QWidget *WordCard::makeSound(std::optional<TextType> line)
{
    auto *holder = new QWidget;
    auto *row = rowOf(holder, 0); // the button has a padding of its own
    const QString phonetic = m_data.explanation.phonetic.value_or(QString());
    auto *speak = makeSpeakButton(m_theme, m_parts.speaker, u"speakWord"_s, m_data.explanation.headword);
    if (!phonetic.isEmpty()) {
        auto *text = makeReadText(m_theme, u"phonetic"_s, u"音标"_s, phonetic,
            {.type = TextType::small,
                .tone = Tone::ink2,
                .pitch = line ? std::nullopt : std::optional(soundRowPitch),
                .line = line});
        text->setFixedWidth(
            std::min(text->naturalWidth(), m_contentWidth - speak->maximumWidth() - row->spacing()));
        row->addWidget(text, 0, Qt::AlignVCenter);
    }
    row->addWidget(speak, 0, Qt::AlignVCenter);
    row->addStretch();
    return holder;
}

QWidget *WordCard::makeCorner()
{
    auto *holder = new QWidget;
    holder->setFixedHeight(m_theme.points(28));
    auto *row = rowOf(holder, m_theme.points(10));
    row->addWidget(makeRegisterBadge(m_theme, registerFrom(m_data.explanation.register_)));
    row->addWidget(makeSaveControl());
    return holder;
}

QWidget *WordCard::makeSaveControl()
{
    if (m_data.justSaved)
        return makeSavedLabel();
    if (m_data.savedLookupCount) {
        auto *count = makeMarkedLabel(m_theme, u"savedCount"_s, Icon::starFill,
            u"第 %1 次"_s.arg(*m_data.savedLookupCount), Tone::accent);
        count->setToolTip(u"已在生词本里，这是第 %1 次查到"_s.arg(*m_data.savedLookupCount));
        return count;
    }
    auto *save = makeSaveButton();
    connect(save, &QPushButton::clicked, this, [this] { m_parts.controller.save(); });
    return save;
}

QPushButton *WordCard::makeSaveButton() const
{
    auto *save = makeButton(m_theme, u"save"_s, u"保存"_s, {.kind = ButtonKind::primary, .icon = Icon::star});
    save->ensurePolished();
    save->setMinimumWidth(save->sizeHint().width());
    return save;
}

/// As wide as the button in whose place it comes, so that nothing moves.
QWidget *WordCard::makeSavedLabel() const
{
    QWidget *label = makeMarkedLabel(m_theme, u"justSaved"_s, Icon::checkCircleFill, u"已保存"_s, Tone::good);
    const std::unique_ptr<const QPushButton> before(makeSaveButton());
    static_cast<QHBoxLayout *>(label->layout())->insertStretch(0);
    label->setFixedWidth(std::max(label->sizeHint().width(), before->minimumWidth()));
    return label;
}

void WordCard::addMeaning()
{
    const RecallState &recall = m_data.recall;
    if (recall.kind == RecallState::Kind::hidden)
        return add(makeRecallPrompt(), 8);
    add(makeMeaningRow(), 6);
    if (recall.kind == RecallState::Kind::revealed)
        add(makeRecallRating(), 8);
    else if (recall.kind == RecallState::Kind::done)
        add(makeVerdict(), 6);
}

QWidget *WordCard::makeMeaningRow() const
{
    auto *holder = new QWidget;
    auto *row = rowOf(holder, m_theme.points(8));
    const QString pos = m_data.explanation.pos.value_or(QString());
    if (!pos.isEmpty()) {
        auto *kind = makeReadText(m_theme, u"pos"_s, u"词性"_s, pos,
            {.type = TextType::small,
                .tone = Tone::ink2,
                .weight = QFont::Medium,
                .line = TextType::meaning});
        kind->setFixedWidth(std::min(kind->naturalWidth(), m_contentWidth / 3));
        row->addWidget(kind, 0, Qt::AlignTop);
    }
    row->addWidget(makeReadText(
        m_theme, u"meaning"_s, u"意思"_s, m_data.explanation.meaningZh, {.type = TextType::meaning}));
    return holder;
}

namespace {

QHBoxLayout *areaRow(const Theme &theme, QFrame *area)
{
    auto *row = new QHBoxLayout(area);
    row->setContentsMargins(theme.points(10), theme.points(6), theme.points(6), theme.points(6));
    row->setSpacing(theme.points(6));
    return row;
}

} // namespace

QWidget *WordCard::makeRecallPrompt()
{
    QFrame *area = makeArea(u"slip"_s);
    area->setObjectName(u"recallPrompt"_s);
    auto *row = areaRow(m_theme, area);
    row->addWidget(makeReadText(m_theme, u"recallQuestion"_s, u"先想一想"_s,
                       u"你查过 %1 次了，先想一想它在这里的意思？"_s.arg(m_data.savedLookupCount.value_or(0)),
                       {.type = TextType::small, .tone = Tone::ink2}),
        0, Qt::AlignVCenter);
    auto *reveal = makeButton(m_theme, u"reveal"_s, u"看答案"_s, {});
    connect(reveal, &QPushButton::clicked, this, [this] { m_parts.controller.revealRecall(); });
    row->addWidget(reveal);
    return area;
}

QWidget *WordCard::makeRecallRating()
{
    QFrame *area = makeArea(u"slip"_s);
    area->setObjectName(u"recallRating"_s);
    auto *row = areaRow(m_theme, area);
    row->addWidget(makeReadText(m_theme, u"recallQuestion"_s, u"想起来了吗"_s, u"刚才想起来了吗？"_s,
                       {.type = TextType::small, .tone = Tone::ink2}),
        0, Qt::AlignVCenter);
    auto *yes = makeButton(m_theme, u"remembered"_s, u"想起来了"_s, {});
    auto *no = makeButton(m_theme, u"forgotten"_s, u"没想起来"_s, {});
    connect(yes, &QPushButton::clicked, this, [this] { m_parts.controller.rateRecall(true); });
    connect(no, &QPushButton::clicked, this, [this] { m_parts.controller.rateRecall(false); });
    row->addWidget(yes);
    row->addWidget(no);
    return area;
}

QWidget *WordCard::makeVerdict() const
{
    auto *holder = new QWidget;
    auto *row = rowOf(holder, 0);
    row->addWidget(m_data.recall.remembered
            ? makeMarkedLabel(m_theme, u"verdict"_s, Icon::checkCircle, u"记住了，算一次复习"_s, Tone::good)
            : makeMarkedLabel(
                m_theme, u"verdict"_s, Icon::redo, u"没关系，过一会儿会再考你一次"_s, Tone::orangeText));
    row->addStretch();
    return holder;
}

void WordCard::addSentence()
{
    if (sentence().isEmpty())
        return;
    const bool isCovered = m_data.recall.kind == RecallState::Kind::hidden;
    const Explanation &explanation = m_data.explanation;
    add(makeQuote(m_theme, sentence(),
            {explanation.surfaceForm.value_or(QString()), m_data.selection, explanation.headword},
            isCovered ? QString() : explanation.sentenceZh.value_or(QString())),
        10);
}

void WordCard::addDetails()
{
    add(makeLine(), 10);
    addNotes();
    add(makeFormAndGrammarLine(m_theme, m_data.explanation), 8);
    add(makeDerivationLine(m_theme, m_data.explanation), 6);
    add(makeAskButtons(m_theme, QuickQuestion::why, QuickQuestion::simpler,
            [this](std::optional<QuickQuestion> question) { m_parts.controller.ask(question); }),
        10);
    addActions();
}

void WordCard::addNotes()
{
    const Explanation &explanation = m_data.explanation;
    double gap = 10;
    const auto addNote = [&](const QString &name, const QString &what, const QString &text,
                             const ReadText::Look &look) {
        if (text.isEmpty())
            return;
        add(makeReadText(m_theme, name, what, text, look), gap);
        gap = 3;
    };
    addNote(u"definition"_s, u"英文解释"_s, explanation.definitionEn.value_or(QString()),
        {.type = TextType::small});
    addNote(u"registerNote"_s, u"语气说明"_s, explanation.registerNoteZh.value_or(QString()),
        {.type = TextType::small, .tone = Tone::ink2});
    if (explanation.sentenceIsExample.value_or(false))
        addNote(u"exampleNote"_s, u"例句说明"_s, u"（没找到原句，上面是 AI 写的例句）"_s,
            {.type = TextType::tiny, .tone = Tone::ink2});
}

QList<QWidget *> WordCard::makeActions()
{
    QList<QWidget *> actions;
    const auto add = [&](const QString &name, const QString &text, std::optional<Icon> icon) {
        auto *button = makeButton(
            m_theme, name, text, {.kind = ButtonKind::plain, .icon = icon, .type = TextType::tiny});
        actions.append(button);
        return button;
    };
    if (!sentence().isEmpty())
        connect(add(u"speakSentence"_s, u"朗读原句"_s, Icon::speakerLine), &QPushButton::clicked, this,
            [this] { m_parts.speaker.speak(sentence()); });
    if (m_data.savedLookupCount && !m_data.justSaved)
        connect(add(u"saveExample"_s, u"把这个例句也存下来"_s, std::nullopt), &QPushButton::clicked, this,
            [this] { m_parts.controller.save(); });
    const WordEntry *entry = m_parts.words.findHeadword(m_data.explanation.headword);
    if (entry && canBeWanted(*entry))
        actions.append(makeWantToggle(*entry));
    return actions;
}

QWidget *WordCard::makeWantToggle(const WordEntry &entry)
{
    const bool isWanted = entry.wantToLearn.value_or(false);
    auto *toggle = makeButton(m_theme, u"wantToLearn"_s, isWanted ? u"已标想学"_s : u"想学"_s,
        {.kind = ButtonKind::plain,
            .icon = isWanted ? Icon::starFill : Icon::star,
            .type = TextType::tiny,
            .iconTone = isWanted ? std::optional(Tone::gold) : std::nullopt});
    toggle->setToolTip(u"标了想学，会排在最前面进入「在学」"_s);
    connect(toggle, &QPushButton::clicked, this,
        [this, id = entry.id, isWanted] { m_parts.words.setWantToLearn(id, !isWanted); });
    return toggle;
}

/// The source goes to the end of the row, or to one of its own where too little is left of it.
void WordCard::addActions()
{
    const QList<QWidget *> actions = makeActions();
    auto *buttons = new QWidget;
    auto *flow = new FlowLayout(m_theme.points(14), 0, buttons);
    for (QWidget *action : actions)
        flow->addWidget(action);
    const int used = actions.isEmpty() ? 0 : flow->sizeHint().width() + m_theme.points(14);
    const bool isBeside = m_contentWidth - used >= m_theme.points(120);
    QWidget *source =
        makeSourceLabel(m_theme, m_data.source, false, isBeside ? m_contentWidth - used : m_contentWidth);
    auto *first = new QWidget;
    auto *row = rowOf(first, 0);
    row->addWidget(buttons, 1);
    if (source && isBeside)
        row->addWidget(source, 0, Qt::AlignVCenter);
    if (!actions.isEmpty() || (source && isBeside))
        add(first, 6);
    else
        delete first;
    if (!source || isBeside)
        return;
    auto *second = new QWidget;
    auto *end = rowOf(second, 0);
    end->addStretch();
    end->addWidget(source);
    add(second, 0);
}

} // namespace nimbrelle
