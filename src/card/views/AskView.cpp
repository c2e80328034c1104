#include "card/views/AskView.h"

#include "frame/Text.h"
#include "widgets/Controls.h"
#include "widgets/FocusPlace.h"
#include "widgets/ReadText.h"
#include "widgets/TalkDock.h"
#include "widgets/TalkList.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
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

TalkMessage rowOf(const AskSession::Message &message)
{
    return {message.id, message.isUser, message.text};
}

} // namespace

AskView::AskView(const Theme &theme, AskSession &session, QWidget *parent)
    : QWidget(parent), m_theme(theme), m_session(session)
{
    setObjectName(u"ask"_s);
    (new QVBoxLayout(this))->setContentsMargins(0, 0, 0, 0);
    connect(&theme, &Theme::changed, this, &AskView::rebuild);
    connect(&session, &AskSession::started, this, &AskView::beginAnew);
    connect(&session, &AskSession::messagesChanged, this, &AskView::showMessages);
    connect(&session, &AskSession::messageGrew, this,
        [this](qsizetype index) { m_list->grow(rowOf(m_session.messages()[index])); });
    connect(&session, &AskSession::inputChanged, this, [this] { m_dock->setInput(m_session.input()); });
    connect(&session, &AskSession::stateChanged, this, &AskView::showState);
    rebuild();
}

void AskView::beginAnew()
{
    m_isExpanded = false;
    rebuild();
    m_dock->focusField();
}

void AskView::rebuild()
{
    const FocusPlace focus = m_page ? FocusPlace::in(*m_page) : FocusPlace();
    takeAway(m_page);
    m_footers.clear();
    m_page = new QWidget;
    auto *rows = new QVBoxLayout(m_page);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    m_list = new TalkList(m_theme,
        {TalkList::Follow::newest, margin, 14, u"正在想…"_s, u"点下面的问题直接问，或者自己输入。"_s});
    m_dock =
        new TalkDock(m_theme, {margin, u"自己的问题"_s, u"自己问，比如：这里为什么用 would 而不是 will？"_s});
    rows->addWidget(makeHeader());
    rows->addWidget(makeLine());
    rows->addWidget(m_list, 1);
    rows->addWidget(m_dock);
    layout()->addWidget(m_page);
    m_page->show();
    connect(m_dock, &TalkDock::inputEdited, &m_session, &AskSession::setInput);
    connect(m_dock, &TalkDock::sendPressed, &m_session, &AskSession::sendInput);
    connect(m_dock, &TalkDock::stopPressed, &m_session, &AskSession::stop);
    m_chips = makeChips();
    m_dock->setChips(m_chips);
    m_dock->setInput(m_session.input());
    fitHeader();
    showMessages();
    showState();
    focus.restore(*m_page, *m_dock);
}

/// Scrolls where it would leave no room for the conversation.
QWidget *AskView::makeHeader()
{
    const AskContext &context = m_session.context();
    auto *content = new QWidget;
    content->setProperty("kind", u"scrolled"_s);
    auto *rows = new QVBoxLayout(content);
    rows->setContentsMargins(
        m_theme.points(margin), m_theme.points(14), m_theme.points(margin), m_theme.points(14));
    rows->setSpacing(m_theme.points(2));
    m_original = makeReadText(m_theme, u"original"_s, u"原文"_s, context.original, {TextType::reading});
    rows->addWidget(m_original);
    const QString translation = context.translation.value_or(QString());
    if (!translation.isEmpty())
        rows->addWidget(
            makeReadText(m_theme, u"translation"_s, u"译文"_s, translation, {TextType::small, Tone::ink2}));
    m_fold = nullptr;
    if (characterCount(context.original) > longOriginal) {
        m_fold = makeButton(m_theme, u"fold"_s, u"展开全文"_s, {ButtonKind::link});
        connect(m_fold, &QPushButton::clicked, this, [this] {
            m_isExpanded = !m_isExpanded;
            fitHeader();
        });
        rows->addWidget(m_fold, 0, Qt::AlignLeft);
    }
    m_header = new QScrollArea;
    m_header->setFrameShape(QFrame::NoFrame);
    m_header->setFocusPolicy(Qt::NoFocus);
    m_header->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_header->setWidgetResizable(true);
    m_header->setWidget(content);
    m_header->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    return m_header;
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

QList<QPushButton *> AskView::makeChips()
{
    QList<QPushButton *> chips;
    for (const QuickQuestion question : allQuickQuestions) {
        auto *chip =
            makeButton(m_theme, u"chip%1"_s.arg(chips.size()), label(question), {ButtonKind::dockChip});
        connect(chip, &QPushButton::clicked, this, [this, question] {
            m_dock->focusField(); // before the chip is disabled, and the focus goes anywhere
            m_session.sendQuestion(question);
        });
        chips.append(chip);
    }
    return chips;
}

void AskView::showMessages()
{
    QList<TalkMessage> messages;
    for (const AskSession::Message &message : m_session.messages())
        messages.append(rowOf(message));
    m_list->setMessages(messages);
}

void AskView::showState()
{
    for (QPushButton *chip : std::as_const(m_chips))
        chip->setEnabled(!m_session.isAnswering());
    m_dock->setAnswering(m_session.isAnswering());
    m_dock->setError(m_session.error());
    for (const AskSession::Message &message : m_session.messages()) {
        const Footer footer = footerOf(message);
        if (message.isUser || m_footers.value(message.id, Footer::none) == footer)
            continue;
        m_footers.insert(message.id, footer);
        m_list->setFooter(message.id, makeFooter(footer, message.id));
    }
}

AskView::Footer AskView::footerOf(const AskSession::Message &message) const
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
        auto *save = makeButton(m_theme, u"save"_s, m_session.saveLabel(), {ButtonKind::soft, Icon::star});
        connect(save, &QPushButton::clicked, this, [this, id] {
            m_dock->focusField();
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
    m_dock->focusField();
}

void AskView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)
        m_list->scrollPage(event->key() == Qt::Key_PageUp ? -1 : 1);
    else
        QWidget::keyPressEvent(event);
}

} // namespace nimbrelle
