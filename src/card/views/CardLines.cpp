#include "card/views/CardLines.h"

#include "card/CardText.h"
#include "widgets/Controls.h"
#include "widgets/FlowLayout.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"

#include <QFontMetrics>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

Icon iconOf(UnlockItem::Kind kind)
{
    switch (kind) {
    case UnlockItem::Kind::form:
        return Icon::layers;
    case UnlockItem::Kind::grammar:
        return Icon::book;
    case UnlockItem::Kind::affixes:
        return Icon::puzzle;
    case UnlockItem::Kind::awakened:
        return Icon::hand;
    case UnlockItem::Kind::family:
        return Icon::persons;
    }
    Q_UNREACHABLE();
}

QWidget *makeGrammarRow(const Theme &theme, GrammarPoint point, const QString &note)
{
    auto *row = new QWidget;
    auto *layout = bareLayout<QHBoxLayout>(row, theme.points(8));
    QLabel *capsule = makeCapsule(theme, label(point), Tint::blue);
    capsule->setObjectName(u"grammar"_s);
    layout->addWidget(capsule, 0, Qt::AlignTop);
    if (note.isEmpty()) {
        layout->addStretch();
        return row;
    }
    setPlainToolTip(*capsule, note);
    layout->addWidget(makeReadText(theme, u"grammarNote"_s, u"语法说明"_s, note,
        {.type = TextType::small, .tone = Tone::ink2, .pitch = 20}));
    return row;
}

} // namespace

QWidget *makeFormAndGrammarLine(const Theme &theme, const Explanation &explanation)
{
    const auto form = formLine(explanation);
    const auto point = looseGrammarPoint(explanation.grammar);
    if (!form && !point)
        return nullptr;
    auto *lines = new QWidget;
    auto *layout = bareLayout<QVBoxLayout>(lines, theme.points(4));
    if (form)
        layout->addWidget(makeReadText(
            theme, u"formLine"_s, u"词形"_s, *form, {.type = TextType::small, .weight = QFont::Medium}));
    if (point)
        layout->addWidget(makeGrammarRow(theme, *point, explanation.grammarNoteZh.value_or(QString())));
    return lines;
}

QWidget *makeDerivationLine(const Theme &theme, const Explanation &explanation)
{
    const auto root = familyRootOf(explanation);
    const QList<Affix> affixes = explanation.affixList();
    if (!root && affixes.isEmpty())
        return nullptr;
    auto *line = new QWidget;
    auto *layout = new FlowLayout(theme.points(8), theme.points(4), line);
    if (root) {
        QLabel *text = makeLabel(theme, u"词根 "_s + *root, TextType::small, Tone::ink);
        text->setObjectName(u"familyRoot"_s);
        text->setFixedHeight(theme.points(20));
        layout->addWidget(text);
    }
    for (const Affix affix : affixes) {
        QLabel *chip = makeChipLabel(theme, displayForm(affix));
        chip->setObjectName(u"affix"_s);
        setPlainToolTip(*chip, displayForm(affix) + u"："_s + meaning(affix));
        layout->addWidget(chip);
    }
    return line;
}

QFrame *makeUnlockBanner(const Theme &theme, const Unlock &unlock)
{
    const QList<UnlockItem> items = unlockItems(unlock);
    if (items.isEmpty())
        return nullptr;
    QFrame *banner = makeArea(u"banner"_s);
    banner->setObjectName(u"unlockBanner"_s);
    auto *layout = new QVBoxLayout(banner);
    layout->setContentsMargins(theme.points(8), theme.points(5), theme.points(8), theme.points(5));
    layout->setSpacing(0);
    for (const UnlockItem &item : items) {
        auto *row = bareLayout<QHBoxLayout>(nullptr, theme.points(8));
        QLabel *icon = makeIconLabel(theme, iconOf(item.kind), 15, theme.colour(Tone::accent));
        icon->setContentsMargins(0, 0, 0, 0);
        auto *text = makeReadText(
            theme, u"unlockItem"_s, u"新解锁"_s, item.text, {.type = TextType::small, .pitch = 22});
        auto *column = bareLayout<QVBoxLayout>(nullptr, 0);
        column->addSpacing(theme.points(3.5));
        column->addWidget(icon);
        column->addStretch();
        row->addLayout(column);
        row->addWidget(text, 1);
        layout->addLayout(row);
    }
    return banner;
}

QWidget *makeAskButtons(const Theme &theme, QuickQuestion primary, QuickQuestion secondary,
    const std::function<void(std::optional<QuickQuestion>)> &ask)
{
    auto *row = new QWidget;
    auto *layout = bareLayout<QHBoxLayout>(row, theme.points(8));
    layout->addWidget(makeIconLabel(theme, Icon::sparkles, 16, theme.colour(Tone::accent)));
    auto *chips = new QWidget;
    auto *flow = new FlowLayout(theme.points(6), theme.points(6), chips);
    const auto add = [&](const QString &name, const QString &text, std::optional<QuickQuestion> question) {
        auto *button = makeButton(theme, name, text, {.kind = ButtonKind::chip});
        QObject::connect(button, &QPushButton::clicked, button, [ask, question] { ask(question); });
        flow->addWidget(button);
    };
    add(u"askPrimary"_s, label(primary), primary);
    add(u"askSecondary"_s, label(secondary), secondary);
    add(u"askOwn"_s, u"自己问…"_s, std::nullopt);
    layout->addWidget(chips, 1);
    return row;
}

TextType typeFitting(const Theme &theme, const QString &text, int available)
{
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    for (const TextType type : {TextType::headword, TextType::heading}) {
        const QFontMetrics metrics(theme.font(type));
        if (std::ranges::all_of(
                words, [&](const QString &word) { return metrics.horizontalAdvance(word) < available; }))
            return type;
    }
    return TextType::meaning;
}

} // namespace nimbrelle
