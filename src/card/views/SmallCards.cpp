#include "card/views/SmallCards.h"

#include "card/CardController.h"
#include "frame/WordPattern.h"
#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/ReadText.h"
#include "widgets/Spinner.h"
#include "wordparts/WordParts.h"

#include <QFontMetrics>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

const auto translateTitle = u"翻译选中的文字"_s;
constexpr int noteLines = 3;

int widthOf(const CardParts &parts, int width)
{
    return std::min(parts.theme.points(cardWidth), width);
}

QVBoxLayout *marginedColumn(const Theme &theme, QWidget *holder, double bottom)
{
    auto *column = new QVBoxLayout(holder);
    const int margin = theme.points(cardMargin);
    column->setContentsMargins(margin, margin, margin, theme.points(bottom));
    column->setSpacing(0);
    return column;
}

/// The head of both waiting cards: the spinner and a title, with `behind` after it.
void addTitleRow(const Theme &theme, QVBoxLayout *column, const QString &title, QWidget *behind = nullptr)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(theme.points(10));
    auto *spinnerColumn = new QVBoxLayout;
    spinnerColumn->addSpacing(theme.points(3.5));
    spinnerColumn->addWidget(new Spinner(theme, 20));
    spinnerColumn->addStretch();
    row->addLayout(spinnerColumn);
    auto *text = makeReadText(theme, u"title"_s, u"正在查"_s, title, {.type = TextType::heading});
    row->addWidget(text, 1);
    if (behind) {
        text->setMaximumWidth(text->naturalWidth());
        row->addWidget(behind, 0, Qt::AlignTop);
        row->addStretch();
    }
    column->addLayout(row);
}

/// A term and its meaning in a capsule, as wide as that needs but never wider than `available`.
QPushButton *makeTermChip(const Theme &theme, const Translation::KeyTerm &term, int available)
{
    auto *chip = makeButton(theme, u"keyTerm"_s, {}, {.kind = ButtonKind::chip});
    chip->setAccessibleName(term.text + u' ' + term.meaningZh);
    chip->setToolTip(u"点一下查这个词"_s);
    auto *row = new QHBoxLayout(chip);
    row->setContentsMargins(theme.points(10), 0, theme.points(10), 0);
    row->setSpacing(theme.points(6));
    int left = available - theme.points(26);
    for (const auto &[text, type, tone, weight] :
        {std::tuple(term.text, TextType::tiny, Tone::ink, QFont::Medium),
            std::tuple(term.meaningZh, TextType::small, Tone::ink2, QFont::Normal)}) {
        const QFontMetrics metrics(theme.font(type, weight));
        const QString shown = metrics.elidedText(text.simplified(), Qt::ElideRight, std::max(left, 0));
        left -= metrics.horizontalAdvance(shown);
        QLabel *label = makeLabel(theme, shown, type, tone, weight);
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        row->addWidget(label);
    }
    chip->setFixedWidth(row->sizeHint().width());
    return chip;
}

QWidget *makeTermChips(const CardParts &parts, const TranslationData &data, int available)
{
    auto *chips = new QWidget;
    const int gap = parts.theme.points(6);
    auto *flow = new FlowLayout(gap, gap, chips);
    for (const Translation::KeyTerm &term : *data.translation.keyTerms) {
        QPushButton *chip = makeTermChip(parts.theme, term, available);
        QObject::connect(chip, &QPushButton::clicked, chip,
            [&controller = parts.controller, text = term.text, original = data.original] {
                controller.lookup(text, original, controller.anchor());
            });
        flow->addWidget(chip);
    }
    return chips;
}

QWidget *makeTranslationFooter(const CardParts &parts)
{
    const Theme &theme = parts.theme;
    auto *footer = new QWidget;
    auto *column = new QVBoxLayout(footer);
    const int margin = theme.points(cardMargin);
    column->setContentsMargins(margin, theme.points(11), margin, margin);
    column->setSpacing(theme.points(11));
    column->addWidget(makeLine());
    auto *flow = new FlowLayout(theme.points(6), theme.points(6));
    const auto add = [&](const QString &name, const QString &text, std::optional<Icon> icon,
                         std::optional<QuickQuestion> question) {
        auto *button =
            makeButton(theme, name, text, {.kind = ButtonKind::soft, .icon = icon, .iconTone = Tone::accent});
        QObject::connect(button, &QPushButton::clicked, button,
            [&controller = parts.controller, question] { controller.ask(question); });
        flow->addWidget(button);
    };
    add(u"askWhy"_s, u"为什么这么用？"_s, Icon::sparkles, QuickQuestion::why);
    add(u"askStructure"_s, u"拆解句子"_s, std::nullopt, QuickQuestion::structure);
    add(u"askOwn"_s, u"自己问…"_s, std::nullopt, std::nullopt);
    column->addLayout(flow);
    return footer;
}

} // namespace

CardPage makeLoadingCard(const CardParts &parts, const CardLoading &loading, int width)
{
    auto *body = new QWidget;
    body->setObjectName(u"loadingCard"_s);
    QVBoxLayout *column = marginedColumn(parts.theme, body, cardMargin);
    addTitleRow(parts.theme, column, loading.selection,
        makeSpeakButton(parts.theme, parts.speaker, u"speakWord"_s, loading.selection));
    return {.body = body, .width = widthOf(parts, width)};
}

CardPage makeTranslatingCard(const CardParts &parts, const Translating &translating, int width)
{
    const Theme &theme = parts.theme;
    auto *body = new QWidget;
    body->setObjectName(u"translatingCard"_s);
    QVBoxLayout *column = marginedColumn(theme, body, cardMargin);
    addTitleRow(theme, column, translateTitle);
    const int available = widthOf(parts, width) - 2 * theme.points(cardMargin);
    const QString note = cutToLines(translating.text, theme.font(TextType::small), available, noteLines);
    if (!note.isEmpty()) {
        column->addSpacing(theme.points(6));
        column->addWidget(
            makeReadText(theme, u"note"_s, u"原文"_s, note, {.type = TextType::small, .tone = Tone::ink2}));
    }
    return {.body = body, .width = widthOf(parts, width)};
}

CardPage makeOfferCard(const CardParts &parts, const TranslateOffer &offer, int)
{
    const int size = parts.theme.points(30);
    auto *button = makeButton(
        parts.theme, u"translate"_s, u"译"_s, {.kind = ButtonKind::offer, .type = TextType::reading});
    button->setAccessibleName(translateTitle);
    button->setToolTip(translateTitle);
    button->setFixedSize(size, size);
    QObject::connect(button, &QPushButton::clicked, button,
        [&controller = parts.controller, text = offer.text] { controller.translate(text); });
    return {.body = button, .width = size};
}

CardPage makeErrorCard(const CardParts &parts, const CardError &error, int width)
{
    const Theme &theme = parts.theme;
    auto *body = new QWidget;
    body->setObjectName(u"errorCard"_s);
    QVBoxLayout *column = marginedColumn(theme, body, cardMargin);
    auto *message = makeReadText(theme, u"message"_s, u"出错了"_s, error.message, {.type = TextType::text});
    column->addWidget(message);
    if (error.needsSettings) {
        auto *settings = makeButton(theme, u"openSettings"_s, u"打开设置"_s, {});
        QObject::connect(settings, &QPushButton::clicked, settings,
            [&controller = parts.controller] { controller.openSettings(); });
        column->addSpacing(theme.points(10));
        column->addWidget(settings, 0, Qt::AlignLeft);
    }
    const int text = std::min(message->naturalWidth(), theme.points(300));
    return {.body = body, .width = std::min(text + 2 * theme.points(cardMargin), width)};
}

CardPage makeTranslationCard(const CardParts &parts, const TranslationData &data, int width)
{
    const Theme &theme = parts.theme;
    const int full = widthOf(parts, width);
    auto *body = new QWidget;
    body->setObjectName(u"translationCard"_s);
    QVBoxLayout *column = marginedColumn(theme, body, 0);
    auto *original = makeReadText(theme, u"original"_s, u"原文"_s, data.original, {.type = TextType::text});
    QStringList terms;
    const bool hasTerms = data.translation.keyTerms && !data.translation.keyTerms->isEmpty();
    if (hasTerms)
        for (const Translation::KeyTerm &term : *data.translation.keyTerms)
            terms.append(term.text);
    for (const TextRange &range : WordPattern::allOccurrences(data.original, terms))
        original->mark(range.start, range.length);
    column->addWidget(original);
    column->addSpacing(theme.points(10));
    column->addWidget(makeReadText(
        theme, u"translation"_s, u"译文"_s, data.translation.translationZh, {.type = TextType::reading}));
    if (hasTerms) {
        column->addSpacing(theme.points(10));
        column->addWidget(makeTermChips(parts, data, full - 2 * theme.points(cardMargin)));
    }
    return {.body = body, .footer = makeTranslationFooter(parts), .width = full};
}

} // namespace nimbrelle
