#include "card/views/WordLines.h"

#include "platform/Speaker.h"
#include "shell/views/Controls.h"

#include <QDesktopServices>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPushButton>
#include <QUrl>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

Tint tintOf(Register tone)
{
    switch (tone) {
    case Register::formal:
        return Tint::blue;
    case Register::neutral:
    case Register::casual: // the two share a colour on purpose
        return Tint::green;
    case Register::slang:
        return Tint::orange;
    case Register::technical:
        return Tint::purple;
    }
    Q_UNREACHABLE();
}

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

template <class Layout> Layout *bare(Layout *layout, int spacing)
{
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    return layout;
}

QWidget *makeGrammarRow(const Theme &theme, GrammarPoint point, const QString &note)
{
    auto *row = new QWidget;
    auto *layout = bare(new QHBoxLayout(row), theme.points(8));
    QLabel *capsule = makeCapsule(theme, label(point), Tint::blue);
    capsule->setObjectName(u"grammar"_s);
    layout->addWidget(capsule, 0, Qt::AlignTop);
    if (note.isEmpty()) {
        layout->addStretch();
        return row;
    }
    setPlainToolTip(*capsule, note);
    layout->addWidget(makeReadText(
        theme, u"grammarNote"_s, u"语法说明"_s, note, {TextType::small, Tone::ink2, std::nullopt, 20}));
    return row;
}

std::optional<QUrl> linkOf(const PageSource &source)
{
    const QUrl url(source.url.value_or(QString()), QUrl::StrictMode);
    return url.isValid() && !url.scheme().isEmpty() ? std::optional(url) : std::nullopt;
}

} // namespace

QPushButton *makeSpeakButton(const Theme &theme, Speaker &speaker, const QString &name, const QString &text)
{
    QPushButton *button = makeIconButton(theme, name, u"朗读"_s, Icon::speaker, 15);
    QObject::connect(button, &QPushButton::clicked, button, [&speaker, text] { speaker.speak(text); });
    return button;
}

QLabel *makeRegisterBadge(const Theme &theme, Register tone)
{
    QLabel *badge = makeCapsule(theme, label(tone), tintOf(tone));
    badge->setObjectName(u"register"_s);
    return badge;
}

ReadText *makeReadText(const Theme &theme, const QString &name, const QString &what, const QString &text,
    const ReadText::Look &look)
{
    auto *view = new ReadText(theme, look);
    view->setObjectName(name);
    view->setAccessibleName(what);
    view->setPlain(text);
    return view;
}

QWidget *makeFormAndGrammarLine(const Theme &theme, const Explanation &explanation)
{
    const auto form = formLine(explanation);
    const auto point = looseGrammarPoint(explanation.grammar);
    if (!form && !point)
        return nullptr;
    auto *lines = new QWidget;
    auto *layout = bare(new QVBoxLayout(lines), theme.points(4));
    if (form)
        layout->addWidget(makeReadText(
            theme, u"formLine"_s, u"词形"_s, *form, {TextType::small, Tone::ink, QFont::Medium}));
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

QWidget *makeSourceLabel(const Theme &theme, const PageSource &source, bool showTitle, int room)
{
    const QString line = sourceLine(source, showTitle);
    if (line.isEmpty())
        return nullptr;
    const QFontMetrics metrics(theme.font(TextType::tiny));
    const auto link = linkOf(source);
    const int beside = link ? theme.points(22) : 0; // the icon and its gap
    const QString shown = metrics.elidedText(line, Qt::ElideMiddle, room - beside);
    if (!link) {
        QLabel *text = makeLabel(theme, shown, TextType::tiny, Tone::ink2);
        text->setObjectName(u"source"_s);
        if (shown != line)
            setPlainToolTip(*text, line);
        return text;
    }
    auto *button = makeButton(theme, u"source"_s, shown, {ButtonKind::plain, Icon::link, TextType::tiny});
    button->setAccessibleName(line);
    setPlainToolTip(*button, link->toString());
    QObject::connect(
        button, &QPushButton::clicked, button, [url = *link] { QDesktopServices::openUrl(url); });
    return button;
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
        auto *row = bare(new QHBoxLayout, theme.points(8));
        QLabel *icon = makeIconLabel(theme, iconOf(item.kind), 15, theme.colour(Tone::accent));
        icon->setContentsMargins(0, 0, 0, 0);
        auto *text = makeReadText(
            theme, u"unlockItem"_s, u"新解锁"_s, item.text, {TextType::small, Tone::ink, std::nullopt, 22});
        auto *column = bare(new QVBoxLayout, 0);
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
    auto *layout = bare(new QHBoxLayout(row), theme.points(8));
    layout->addWidget(makeIconLabel(theme, Icon::sparkles, 16, theme.colour(Tone::accent)));
    auto *chips = new QWidget;
    auto *flow = new FlowLayout(theme.points(6), theme.points(6), chips);
    const auto add = [&](const QString &name, const QString &text, std::optional<QuickQuestion> question) {
        auto *button = makeButton(theme, name, text, {ButtonKind::chip});
        QObject::connect(button, &QPushButton::clicked, button, [ask, question] { ask(question); });
        flow->addWidget(button);
    };
    add(u"askPrimary"_s, label(primary), primary);
    add(u"askSecondary"_s, label(secondary), secondary);
    add(u"askOwn"_s, u"自己问…"_s, std::nullopt);
    layout->addWidget(chips, 1);
    return row;
}

QWidget *makeQuote(
    const Theme &theme, const QString &sentence, const QStringList &terms, const QString &translation)
{
    auto *quote = new QWidget;
    auto *layout = bare(new QHBoxLayout(quote), theme.points(12));
    QFrame *rule = makeArea(u"rule"_s);
    rule->setFixedWidth(theme.points(2));
    layout->addWidget(rule);
    auto *texts = bare(new QVBoxLayout, theme.points(3));
    auto *english = makeReadText(theme, u"sentence"_s, u"原句"_s, sentence, {});
    for (const TextRange &range : highlighted(sentence, terms))
        english->mark(range.from, range.length);
    texts->addWidget(english);
    if (!translation.isEmpty())
        texts->addWidget(makeReadText(
            theme, u"sentenceZh"_s, u"句子的意思"_s, translation, {TextType::small, Tone::ink2}));
    layout->addLayout(texts, 1);
    return quote;
}

} // namespace nimbrelle
