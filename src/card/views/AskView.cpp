#include "card/views/AskView.h"

#include "frame/Text.h"
#include "widgets/Controls.h"
#include "widgets/ReadText.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double margin = 20;
constexpr qsizetype longOriginal = 160; // characters; a longer one is shown cut short
constexpr int linesOfCut = 2;
constexpr double mostOfHeader = 0.45; // of the window's height

const TalkView::Look look{
    .list = {.follow = TalkList::Follow::newest,
        .margin = margin,
        .above = 14,
        .waiting = u"正在想…"_s,
        .hint = u"点下面的问题直接问，或者自己输入。"_s},
    .dock = {.margin = margin,
        .fieldName = u"自己的问题"_s,
        .placeholder = u"自己问，比如：这里为什么用 would 而不是 will？"_s},
};

TalkMessage rowOf(const Conversation::Message &message)
{
    return {.id = message.id, .isLearner = message.isUser, .text = message.shownText()};
}

} // namespace

AskView::AskView(const Theme &theme, AskSession &session, QWidget *parent)
    : TalkView(theme, look, parent), m_session(session)
{
    setObjectName(u"ask"_s);
    connect(&session, &AskSession::started, this, &AskView::beginAnew);
    connect(&session, &AskSession::changed, this, &AskView::refresh);
    connect(&session, &AskSession::messageGrew, this,
        [this](qsizetype index) { list().grow(rowOf(m_session.messages()[index])); });
    connect(&session, &AskSession::inputChanged, this, [this] { dock().setInput(m_session.input()); });
    connect(this, &AskView::inputEdited, &session, &AskSession::setInput);
    connect(this, &AskView::sendPressed, &session, [&session] { session.send(); });
    connect(this, &AskView::stopPressed, &session, &AskSession::stop);
    rebuild();
}

void AskView::beginAnew()
{
    m_isExpanded = false;
    rebuild();
    dock().focusField();
}

void AskView::rebuild()
{
    m_footers.clear();
    TalkView::rebuild();
    fitHeader();
}

/// Scrolls where it would leave no room for the conversation.
void AskView::addHeader(QVBoxLayout &rows)
{
    QWidget *text = makeHeaderText();
    m_header = new QScrollArea;
    m_header->setFrameShape(QFrame::NoFrame);
    m_header->setFocusPolicy(Qt::NoFocus);
    m_header->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_header->setWidgetResizable(true);
    m_header->setWidget(text);
    m_header->viewport()->setAutoFillBackground(false);
    text->setAutoFillBackground(false);
    rows.addWidget(m_header);
    rows.addWidget(makeLine());
}

QWidget *AskView::makeHeaderText()
{
    const AskContext &context = m_session.context();
    auto *content = new QWidget;
    content->setProperty("kind", u"scrolled"_s);
    auto *rows = new QVBoxLayout(content);
    rows->setContentsMargins(
        m_theme.points(margin), m_theme.points(14), m_theme.points(margin), m_theme.points(14));
    rows->setSpacing(m_theme.points(2));
    m_original =
        makeReadText(m_theme, u"original"_s, u"原文"_s, context.original, {.type = TextType::reading});
    rows->addWidget(m_original);
    const QString translation = context.translation.value_or(QString());
    if (!translation.isEmpty())
        rows->addWidget(makeReadText(m_theme, u"translation"_s, u"译文"_s, translation,
            {.type = TextType::small, .tone = Tone::ink2}));
    m_fold = nullptr;
    if (characterCount(context.original) > longOriginal) {
        m_fold = makeButton(m_theme, u"fold"_s, u"展开全文"_s, {.kind = ButtonKind::link});
        connect(m_fold, &QPushButton::clicked, this, [this] {
            m_isExpanded = !m_isExpanded;
            fitHeader();
        });
        rows->addWidget(m_fold, 0, Qt::AlignLeft);
    }
    return content;
}

void AskView::showOriginal()
{
    if (!m_fold)
        return;
    const QString label = m_isExpanded ? u"收起"_s : u"展开全文"_s;
    m_fold->setText(label);
    m_fold->setAccessibleName(label);
    const QString &whole = m_session.context().original;
    m_original->setPlain(m_isExpanded ? whole
                                      : cutToLines(whole, m_theme.font(TextType::reading),
                                          width() - 2 * m_theme.points(margin), linesOfCut));
}

void AskView::fitHeader()
{
    showOriginal();
    const int wanted = m_header->widget()->layout()->totalHeightForWidth(width());
    const int most = static_cast<int>(height() * mostOfHeader);
    m_header->setFixedHeight(std::min(wanted, std::max(most, m_theme.points(60))));
}

void AskView::addChips()
{
    QList<QPushButton *> chips;
    for (const QuickQuestion question : allQuickQuestions) {
        QPushButton *chip = dock().makeQuestionChip(u"chip%1"_s.arg(chips.size()), label(question));
        connect(chip, &QPushButton::clicked, this, [this, question] { m_session.sendQuestion(question); });
        chips.append(chip);
    }
    dock().setChips(chips);
}

void AskView::refresh()
{
    QList<TalkMessage> messages;
    for (const Conversation::Message &message : m_session.messages())
        messages.append(rowOf(message));
    list().setMessages(messages);
    dock().setInput(m_session.input());
    dock().setAnswering(m_session.isAnswering());
    dock().setError(m_session.error());
    showFooters();
}

void AskView::showFooters()
{
    for (const Conversation::Message &message : m_session.messages()) {
        const Footer footer = footerOf(message);
        if (message.isUser || m_footers.value(message.id, Footer::none) == footer)
            continue;
        m_footers.insert(message.id, footer);
        list().setFooter(message.id, makeFooter(footer, message.id));
    }
}

AskView::Footer AskView::footerOf(const Conversation::Message &message) const
{
    if (message.isUser || message.text.isEmpty() || m_session.isStreaming(message))
        return Footer::none;
    return m_session.savedIDs().contains(message.id) ? Footer::saved : Footer::offer;
}

QWidget *AskView::makeFooter(Footer footer, const QUuid &id)
{
    if (footer == Footer::none)
        return nullptr;
    if (footer == Footer::offer) {
        auto *save = makeButton(
            m_theme, u"save"_s, m_session.saveLabel(), {.kind = ButtonKind::soft, .icon = Icon::star});
        connect(save, &QPushButton::clicked, this, [this, id] {
            dock().focusField();
            m_session.save(id);
        });
        return save;
    }
    auto *saved = new QWidget;
    saved->setObjectName(u"saved"_s);
    saved->setAccessibleName(u"已存"_s);
    auto *row = new QHBoxLayout(saved);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(m_theme.points(4));
    row->addWidget(makeIconLabel(m_theme, Icon::checkCircleFill, 15, m_theme.colour(Tone::good)));
    row->addWidget(makeLabel(m_theme, u"已存"_s, TextType::small, Tone::good));
    row->addStretch();
    return saved;
}

void AskView::resizeEvent(QResizeEvent *)
{
    fitHeader();
}

void AskView::showEvent(QShowEvent *)
{
    dock().focusField();
}

} // namespace nimbrelle
