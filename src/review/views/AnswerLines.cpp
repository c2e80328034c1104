#include "review/views/AnswerLines.h"

#include "widgets/Controls.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"
#include "wordparts/WordParts.h"

#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QLabel *makeDisc(const Theme &theme, Rating rating)
{
    const bool isGood = rating == Rating::good || rating == Rating::easy;
    const Icon icon = rating == Rating::again ? Icon::againCircleFill : Icon::checkCircleFill;
    const Tone tone = isGood ? Tone::good : rating == Rating::hard ? Tone::amber : Tone::leaf;
    auto *disc = new QLabel;
    const int size = theme.points(22);
    disc->setPixmap(iconPixmap(icon, size, qGuiApp->devicePixelRatio(), theme.colour(tone),
        theme.colour(isGood ? Tone::paper : Tone::onLeaf)));
    disc->setFixedSize(size, size);
    return disc;
}

} // namespace

QWidget *makeMeaningRow(const Theme &theme, const WordEntry &entry, const ReadText::Look &look, int width)
{
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(8));
    const double pitch = look.pitch.value_or(Theme::pitch(look.type));
    const int gap = theme.points(8);
    if (!entry.pos.isEmpty()) {
        auto *pos = makeReadText(theme, u"pos"_s, u"词性"_s, entry.pos,
            {look.type == TextType::heading ? TextType::text : TextType::small, Tone::ink2, QFont::Medium,
                pitch, std::nullopt, look.type});
        pos->setFixedWidth(std::min(pos->naturalWidth(), width / 3));
        row->addWidget(pos, 0, Qt::AlignTop);
        width -= pos->maximumWidth() + gap;
    }
    auto *badge = makeRegisterBadge(theme, entry.register_);
    width -= badge->sizeHint().width() + gap;
    auto *meaning = makeReadText(theme, u"meaning"_s, u"意思"_s, entry.meaningZh, look);
    meaning->setFixedWidth(std::min(meaning->naturalWidth(), width));
    row->addWidget(meaning);
    auto *side = bareLayout<QVBoxLayout>(nullptr, 0);
    side->addSpacing((theme.points(pitch) - badge->maximumHeight()) / 2);
    side->addWidget(badge);
    row->addLayout(side);
    row->setAlignment(side, Qt::AlignTop);
    row->addStretch();
    return holder;
}

QWidget *makeDefinition(const Theme &theme, const WordEntry &entry, TextType type)
{
    if (entry.definitionEn.isEmpty())
        return nullptr;
    return makeReadText(theme, u"definition"_s, u"英文解释"_s, entry.definitionEn, {type, Tone::ink2});
}

QWidget *makeBaseRow(const Theme &theme, const ReviewQuestion &question)
{
    const auto line = ReviewScreen::baseLine(question);
    if (!line)
        return nullptr;
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(6));
    row->addWidget(makeLabel(theme, question.answer, TextType::text, Tone::ink, QFont::DemiBold));
    auto *base = makeLabel(theme, *line, TextType::text, Tone::ink2);
    base->setObjectName(u"baseLine"_s);
    row->addWidget(base);
    row->addStretch();
    return holder;
}

QWidget *makeTranslation(const Theme &theme, const ReviewQuestion &question, TextType type)
{
    const QString translation = question.sentenceZh.value_or(QString());
    const bool isGenerated = ReviewScreen::isSentenceGenerated(question);
    if (translation.isEmpty() && !isGenerated)
        return nullptr;
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(6));
    if (isGenerated) {
        auto *sign = makeIconLabel(theme, Icon::sparkles, 14, theme.colour(Tone::accent));
        sign->setObjectName(u"generated"_s);
        sign->setAccessibleName(u"AI 写的例句"_s);
        sign->setToolTip(u"AI 写的例句"_s);
        sign->setFixedHeight(theme.points(Theme::pitch(type)));
        row->addWidget(sign, 0, Qt::AlignTop);
    }
    if (!translation.isEmpty())
        row->addWidget(
            makeReadText(theme, u"sentenceZh"_s, u"句子的意思"_s, translation, {type, Tone::ink2}), 1);
    else
        row->addStretch();
    return holder;
}

QWidget *makeMnemonic(const Theme &theme, const WordEntry &entry)
{
    const QString aid = entry.mnemonic.value_or(QString());
    if (aid.isEmpty())
        return nullptr;
    auto *holder = new QWidget;
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(11));
    QFrame *rule = makeArea(u"memoryRule"_s);
    rule->setFixedWidth(theme.points(2));
    row->addWidget(rule);
    auto *rows = bareLayout<QVBoxLayout>(nullptr, 0);
    auto *head = bareLayout<QHBoxLayout>(nullptr, theme.points(6));
    head->addWidget(makeIconLabel(theme, Icon::brain, 14, theme.colour(Tone::purpleText)));
    head->addWidget(makeLabel(theme, u"换个记法"_s, TextType::small, Tone::purpleText));
    head->addStretch();
    rows->addLayout(head);
    rows->addWidget(makeReadText(
        theme, u"mnemonic"_s, u"换个记法"_s, aid, {.type = TextType::text, .tone = Tone::purpleText}));
    row->addLayout(rows, 1);
    return holder;
}

QWidget *makeVerdict(const Theme &theme, const ReviewSession::Revealed &revealed)
{
    const Rating rating = revealed.rating.value_or(Rating::again);
    auto *holder = new QWidget;
    holder->setObjectName(u"verdict"_s);
    holder->setAccessibleName(ReviewScreen::verdictName(rating));
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(10));
    row->addWidget(makeDisc(theme, rating), 0, Qt::AlignTop);
    if (revealed.message)
        row->addWidget(
            makeReadText(theme, u"message"_s, u"批改"_s, *revealed.message, {.type = TextType::reading}), 1);
    else
        row->addStretch();
    return holder;
}

QWidget *makeBanner(const ReviewParts &parts, ReviewScreen::Banner banner)
{
    using enum ReviewScreen::Banner;
    const Theme &theme = parts.theme;
    const auto rest = [&parts](QPushButton *button) {
        button->setFocusPolicy(Qt::TabFocus);
        QObject::connect(button, &QPushButton::clicked, &parts.session,
            [&session = parts.session] { session.restWord(); });
        return button;
    };
    if (banner == none)
        return nullptr;
    if (banner == restLink) {
        auto *holder = new QWidget;
        auto *row = bareLayout<QHBoxLayout>(holder, 0);
        row->addWidget(rest(makeButton(theme, u"restWord"_s, text(banner), {.kind = ButtonKind::link})));
        row->addStretch();
        return holder;
    }
    QFrame *area = makeArea(u"banner"_s);
    area->setObjectName(u"outcome"_s);
    area->setAccessibleName(text(banner));
    auto *row = new QHBoxLayout(area);
    row->setContentsMargins(theme.points(10), theme.points(8), theme.points(10), theme.points(8));
    row->setSpacing(theme.points(10));
    if (banner == graduated)
        row->addWidget(makeIconLabel(theme, Icon::capFill, 18, theme.colour(Tone::accent)));
    row->addWidget(makeReadText(theme, u"outcomeText"_s, u"结果"_s, text(banner), {.type = TextType::text}),
        1, Qt::AlignVCenter);
    if (banner == leech)
        row->addWidget(rest(makeButton(theme, u"restWord"_s, u"先让它休息一周"_s, {})));
    return area;
}

} // namespace nimbrelle
