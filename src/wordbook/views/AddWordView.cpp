#include "wordbook/views/AddWordView.h"

#include "widgets/Controls.h"
#include "widgets/ReadText.h"
#include "widgets/Spinner.h"
#include "wordbook/AddWordModel.h"
#include "wordbook/views/AddWordPreview.h"
#include "wordbook/views/PaneParts.h"

#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double margin = 20;
constexpr double scrollBar = 8;
constexpr double openingWidth = 460;
constexpr double fieldPadding = 26;
constexpr double narrowest = 360;
constexpr double lowest = 220;
constexpr double highest = 560;

const QKeySequence &saveKey()
{
    static const QKeySequence key(Qt::CTRL | Qt::Key_S);
    return key;
}

/// The largest in which the window shows the whole text as it opens, else the smallest; families differ in
/// width.
TextType typeFitting(const Theme &theme, const QString &text)
{
    const int room = theme.points(openingWidth - 2 * margin - fieldPadding);
    for (const TextType type : {TextType::reading, TextType::text})
        if (QFontMetrics(theme.font(type)).horizontalAdvance(text) <= room)
            return type;
    return TextType::small;
}

int heightFor(const QWidget *widget, int width)
{
    if (!widget)
        return 0;
    QLayout *layout = widget->layout();
    return layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                       : layout->totalSizeHint().height();
}

} // namespace

AddWordView::AddWordView(const Theme &theme, AddWordModel &model, Speaker &speaker)
    : m_theme(theme), m_model(model), m_speaker(speaker)
{
    setObjectName(u"addWord"_s);
    connect(&theme, &Theme::changed, this, &AddWordView::build);
    connect(&model, &AddWordModel::changed, this, &AddWordView::refresh);
    connect(&model, &AddWordModel::wordChanged, this, &AddWordView::takeFieldsFromModel);
    connect(&model, &AddWordModel::wasReset, this, [this] { m_word->setFocus(); });
    connect(new QShortcut(saveKey(), this), &QShortcut::activated, &model, &AddWordModel::save);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { window()->close(); });
    build();
}

void AddWordView::build()
{
    const bool hadFocus = isAncestorOf(window()->focusWidget());
    for (QWidget *part : {m_top, static_cast<QWidget *>(m_preview), m_actions})
        takeAway(part);
    m_preview = nullptr;
    m_actions = nullptr;
    m_shown.reset();
    setMinimumSize(boundedByScreen(*this, {m_theme.points(narrowest), m_theme.points(lowest)}));
    m_top = new QWidget(this);
    addFields();
    m_top->show();
    refresh();
    if (hadFocus)
        m_word->setFocus();
}

void AddWordView::addFields()
{
    auto *rows = new QVBoxLayout(m_top);
    const int side = m_theme.points(margin);
    rows->setContentsMargins(side, side, side, 0);
    rows->setSpacing(m_theme.points(10));
    m_word = makeField(
        m_theme, u"word"_s, u"查词"_s, u"输入英文或中文，比如 reluctant、放弃、Bohemian Rhapsody"_s);
    m_word->setProperty("shape", u"large"_s);
    m_word->setFont(m_theme.font(typeFitting(m_theme, m_word->placeholderText())));
    m_word->setFixedHeight(m_theme.points(40));
    m_sentence =
        makeField(m_theme, u"sentence"_s, u"例句"_s, u"在哪句话里遇到的？AI 会按这句话里的意思解释"_s);
    takeFieldsFromModel();
    connect(m_word, &QLineEdit::textEdited, &m_model, &AddWordModel::setWord);
    connect(m_sentence, &QLineEdit::textEdited, &m_model, &AddWordModel::setSentence);
    for (QLineEdit *field : {m_word, m_sentence}) {
        connect(field, &QLineEdit::returnPressed, &m_model, &AddWordModel::lookup);
        rows->addWidget(field);
    }
    rows->addLayout(makeLookupRow());
    m_status = new QVBoxLayout;
    m_status->setContentsMargins(0, 0, 0, 0);
    rows->addLayout(m_status);
}

QHBoxLayout *AddWordView::makeLookupRow()
{
    auto *row = new QHBoxLayout;
    row->setSpacing(m_theme.points(8));
    m_addSentence = makeButton(m_theme, u"addSentence"_s, u"加一个例句"_s, {.kind = ButtonKind::link});
    connect(m_addSentence, &QPushButton::clicked, this, [this] {
        m_model.addSentence();
        m_sentence->setFocus();
    });
    m_running = new Spinner(m_theme, 18);
    m_running->setObjectName(u"spinner"_s);
    m_lookup = makeButton(m_theme, u"lookup"_s, m_model.lookupLabel(), {});
    m_lookup->setMinimumWidth(m_theme.points(58));
    connect(m_lookup, &QPushButton::clicked, this, [this] {
        m_word->setFocus(); // before the button is disabled and hands the focus to anyone
        m_model.lookup();
    });
    row->addWidget(m_addSentence);
    row->addStretch();
    row->addWidget(m_running);
    row->addWidget(m_lookup);
    return row;
}

void AddWordView::takeFieldsFromModel()
{
    for (const auto &[field, text] :
        {std::pair(m_word, m_model.word()), std::pair(m_sentence, m_model.sentence())})
        if (field->text() != text)
            field->setText(text);
}

void AddWordView::refresh()
{
    m_sentence->setVisible(m_model.showSentence());
    m_addSentence->setVisible(!m_model.showSentence());
    m_running->setVisible(m_model.isLoading());
    m_lookup->setText(m_model.lookupLabel());
    m_lookup->setAccessibleName(m_model.lookupLabel());
    m_lookup->setEnabled(!m_model.isLoading());
    setButtonKind(*m_lookup, m_model.result() ? ButtonKind::outlined : ButtonKind::primary);
    refreshStatus();
    refreshResult();
    arrange();
}

void AddWordView::refreshStatus()
{
    while (QLayoutItem *old = m_status->takeAt(0)) {
        takeAway(old->widget());
        delete old;
    }
    const auto add = [this](QWidget *line) {
        m_status->addWidget(line);
        line->show(); // at once, since what is hidden has no height
    };
    if (!m_model.lastSaved().isEmpty())
        add(makeMarked(m_theme, Icon::checkCircleFill, Tone::good,
            makeReadText(m_theme, u"lastSaved"_s, u"已保存"_s, m_model.lastSaved(),
                {.type = TextType::small, .tone = Tone::good})));
    if (!m_model.error().isEmpty())
        add(makeReadText(m_theme, u"error"_s, u"没有查到"_s, m_model.error(),
            {.type = TextType::small, .tone = Tone::bad}));
}

/// Keeps the widgets when only something else in the notebook has changed.
void AddWordView::refreshResult()
{
    const Shown now{m_model.result(), m_model.isKnown(), m_model.isSpelled()};
    if (m_shown == now)
        return;
    m_shown = now;
    const bool hadFocus = (m_preview && m_preview->isAncestorOf(window()->focusWidget()))
        || (m_actions && m_actions->isAncestorOf(window()->focusWidget()));
    takeAway(m_preview);
    takeAway(m_actions);
    m_preview = nullptr;
    m_actions = nullptr;
    if (hadFocus)
        m_word->setFocus();
    if (!m_model.result())
        return;
    m_preview = new QScrollArea(this);
    m_preview->setObjectName(u"preview"_s);
    m_preview->setFrameShape(QFrame::NoFrame);
    m_preview->setFocusPolicy(Qt::NoFocus);
    m_preview->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_preview->setWidgetResizable(true);
    m_preview->setWidget(new AddWordPreview(m_theme, m_model, m_speaker));
    m_preview->viewport()->setAutoFillBackground(false);
    m_preview->widget()->setAutoFillBackground(false);
    m_actions = makeActions();
    m_actions->setParent(this);
    m_preview->show();
    m_actions->show();
}

QWidget *AddWordView::makeActions()
{
    auto *holder = new QWidget;
    auto *rows = new QVBoxLayout(holder);
    const int side = m_theme.points(margin);
    rows->setContentsMargins(side, 0, side, side);
    rows->setSpacing(m_theme.points(12));
    rows->addWidget(makeLine());
    if (m_model.isKnown())
        rows->addWidget(makeReadText(m_theme, u"knownNote"_s, u"提示"_s,
            u"这个词已经在生词本里了，保存会把这个例句加进去。"_s,
            {.type = TextType::small, .tone = Tone::ink2}));
    auto *row = new QHBoxLayout;
    row->setSpacing(m_theme.points(8));
    row->addWidget(makeSaveButton());
    row->addWidget(makeSpellingButton());
    row->addStretch();
    auto *again = makeButton(m_theme, u"reset"_s, u"重新输入"_s, {.kind = ButtonKind::plain});
    connect(again, &QPushButton::clicked, &m_model, &AddWordModel::reset);
    row->addWidget(again);
    rows->addLayout(row);
    return holder;
}

QPushButton *AddWordView::makeSaveButton()
{
    auto *save = makeButton(m_theme, u"save"_s, u"保存"_s, {.kind = ButtonKind::primary, .icon = Icon::star});
    save->setFixedHeight(m_theme.points(34));
    save->setProperty("hasKey", true);
    connect(save, &QPushButton::clicked, &m_model, &AddWordModel::save);
    auto *key =
        makeLabel(m_theme, saveKey().toString(QKeySequence::NativeText), TextType::tiny, Tone::primaryText);
    key->setProperty("kind", u"keycap"_s);
    key->setAttribute(Qt::WA_TransparentForMouseEvents);
    key->setFixedHeight(m_theme.points(18));
    auto *row = new QHBoxLayout(save);
    row->setContentsMargins(0, 0, m_theme.points(10), 0);
    row->addStretch();
    row->addWidget(key);
    save->ensurePolished();
    key->ensurePolished();
    save->setFixedWidth(save->sizeHint().width() + key->sizeHint().width() + m_theme.points(12));
    return save;
}

QPushButton *AddWordView::makeSpellingButton()
{
    const bool isSpelled = m_model.isSpelled();
    auto *spell = makeButton(m_theme, u"addSpelling"_s, isSpelled ? u"已在常拼"_s : u"加入常拼"_s,
        {.icon = isSpelled ? Icon::check : Icon::cursor});
    spell->setFixedHeight(m_theme.points(34));
    spell->setToolTip(u"经常要打的词，多练拼写"_s);
    connect(spell, &QPushButton::clicked, &m_model, &AddWordModel::addSpelling);
    return spell;
}

int AddWordView::heightForWidth(int width) const
{
    const int preview = previewHeight(width);
    const int needed = heightFor(m_top, width) + preview
        + (m_preview ? heightFor(m_actions, width) : m_theme.points(margin));
    return std::clamp(needed, m_theme.points(lowest), m_theme.points(highest));
}

int AddWordView::previewHeight(int width) const
{
    if (!m_preview)
        return 0;
    const bool isScrolling = m_preview->verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn;
    return heightFor(m_preview->widget(), width - (isScrolling ? m_theme.points(scrollBar) : 0));
}

QSize AddWordView::sizeHint() const
{
    const int width = m_theme.points(openingWidth);
    return {width, heightForWidth(width)};
}

/// The actions follow what they are for, and stay in view where that has to scroll.
void AddWordView::arrange()
{
    const int top = heightFor(m_top, width());
    m_top->setGeometry(0, 0, width(), top);
    if (m_preview) {
        const int actions = heightFor(m_actions, width());
        const int needed = previewHeight(width());
        const int preview = std::clamp(needed, 0, std::max(0, height() - top - actions));
        scrollBarTakesMargin(preview < needed);
        m_preview->setGeometry(0, top, width(), preview);
        m_actions->setGeometry(0, top + preview, width(), actions);
    }
    const int wanted = heightForWidth(width());
    if (std::exchange(m_wantedHeight, wanted) != wanted)
        resize(boundedByScreen(*this, {width(), wanted}));
}

/// So that the lines keep their length.
void AddWordView::scrollBarTakesMargin(bool isScrolling)
{
    QLayout *rows = m_preview->widget()->layout();
    QMargins margins = rows->contentsMargins();
    margins.setRight(m_theme.points(margin) - (isScrolling ? m_theme.points(scrollBar) : 0));
    rows->setContentsMargins(margins);
    m_preview->setVerticalScrollBarPolicy(isScrolling ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
}

void AddWordView::resizeEvent(QResizeEvent *)
{
    arrange();
}

void AddWordView::showEvent(QShowEvent *)
{
    m_word->setFocus();
    arrange();
}

} // namespace nimbrelle
