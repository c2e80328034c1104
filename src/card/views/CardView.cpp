#include "card/views/CardView.h"

#include "card/CardController.h"
#include "card/views/SmallCards.h"
#include "notebook/WordStore.h"
#include "widgets/Theme.h"

#include <QFrame>
#include <QLayout>
#include <QScrollArea>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

int heightFor(const QWidget &widget, int width)
{
    if (QLayout *layout = widget.layout())
        return layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                           : layout->totalSizeHint().height();
    return widget.maximumHeight();
}

} // namespace

CardView::CardView(const CardParts &parts, QWidget *parent) : QWidget(parent), m_parts(parts)
{
    setObjectName(u"card"_s);
    connect(&parts.controller.model(), &CardModel::stateChanged, this, &CardView::rebuild);
    connect(&parts.theme, &Theme::changed, this, &CardView::rebuild);
    // Queued, for the store is in the middle of a change.
    connect(&parts.words, &WordStore::changing, this, &CardView::rebuildDetails, Qt::QueuedConnection);
    rebuild();
}

void CardView::setLimits(QSize limits)
{
    if (m_limits == limits)
        return;
    const bool isNarrowed = m_limits.width() != limits.width();
    m_limits = limits;
    if (isNarrowed)
        rebuild();
}

bool CardView::isShowingWord() const
{
    return std::holds_alternative<WordCardData>(m_parts.controller.state());
}

void CardView::rebuildDetails()
{
    if (!isShowingWord() || m_fold == WordCard::Fold::closed)
        return; // nothing of the notebook is in view
    rebuild();
    m_parts.controller.refreshLayout();
}

void CardView::rebuild()
{
    if (!isShowingWord())
        m_fold = WordCard::Fold::closed;
    removePage();
    showPage(makePage());
}

// Deleted later, since the button that was pressed may be one of them.
void CardView::removePage()
{
    for (QWidget *old : {static_cast<QWidget *>(m_scroll), m_page.footer})
        if (old) {
            old->hide();
            old->setParent(nullptr);
            old->deleteLater();
        }
    m_scroll = nullptr;
    m_page = {};
}

CardPage CardView::makePage()
{
    const int width = m_limits.width();
    const CardState &state = m_parts.controller.state();
    if (const auto *loading = std::get_if<CardLoading>(&state))
        return makeLoadingCard(m_parts, *loading, width);
    if (const auto *word = std::get_if<WordCardData>(&state))
        return makeWordPage(*word);
    if (const auto *offer = std::get_if<TranslateOffer>(&state))
        return makeOfferCard(m_parts, *offer, width);
    if (const auto *translating = std::get_if<Translating>(&state))
        return makeTranslatingCard(m_parts, *translating, width);
    if (const auto *translation = std::get_if<TranslationData>(&state))
        return makeTranslationCard(m_parts, *translation, width);
    if (const auto *error = std::get_if<CardError>(&state))
        return makeErrorCard(m_parts, *error, width);
    return {};
}

CardPage CardView::makeWordPage(const WordCardData &data)
{
    const int width = std::min(m_parts.theme.points(cardWidth), m_limits.width());
    auto *card = new WordCard(m_parts, data, m_fold, width);
    connect(card, &WordCard::foldPressed, this, [this] {
        m_fold = m_fold == WordCard::Fold::open ? WordCard::Fold::closed : WordCard::Fold::open;
        rebuild();
        m_parts.controller.refreshLayout();
    });
    return {.body = card, .footer = card->makeFooter(), .width = width};
}

void CardView::showPage(const CardPage &page)
{
    m_page = page;
    if (!page.body)
        return;
    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidgetResizable(true);
    page.body->setProperty("kind",
        page.body->property("kind").isValid() ? page.body->property("kind") : QVariant(u"scrolled"_s));
    m_scroll->setWidget(page.body);
    m_scroll->viewport()->setAutoFillBackground(false);
    page.body->setAutoFillBackground(false);
    if (page.footer)
        page.footer->setParent(this);
    for (QWidget *child : findChildren<QWidget *>())
        child->setFocusPolicy(Qt::NoFocus);
    m_scroll->show();
    if (page.footer)
        page.footer->show();
    arrange();
}

int CardView::footerHeight() const
{
    return m_page.footer ? heightFor(*m_page.footer, m_page.width) : 0;
}

QSize CardView::fittingSize() const
{
    if (!m_page.body)
        return {};
    const int height = heightFor(*m_page.body, m_page.width) + footerHeight();
    return {m_page.width, std::min(height, m_limits.height())};
}

double CardView::cornerRadius() const
{
    const bool isOffer = std::holds_alternative<TranslateOffer>(m_parts.controller.state());
    return m_parts.theme.points(isOffer ? 15 : 12);
}

void CardView::arrange()
{
    if (!m_page.body)
        return;
    const int footer = footerHeight();
    const int body = height() - footer;
    const bool isTooLow = body < heightFor(*m_page.body, width());
    m_scroll->setVerticalScrollBarPolicy(isTooLow ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    m_scroll->setGeometry(0, 0, width(), body);
    if (m_page.footer)
        m_page.footer->setGeometry(0, body, width(), footer);
}

void CardView::resizeEvent(QResizeEvent *)
{
    arrange();
}

} // namespace nimbrelle
