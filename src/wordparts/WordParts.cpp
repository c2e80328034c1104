#include "wordparts/WordParts.h"

#include "frame/WordPattern.h"
#include "notebook/PageSource.h"
#include "platform/Speaker.h"
#include "widgets/Controls.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"

#include <QDesktopServices>
#include <QFontMetrics>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
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

std::optional<QUrl> linkOf(const PageSource &source)
{
    const QUrl url(source.url.value_or(QString()), QUrl::StrictMode);
    const bool isPage = url.scheme() == u"http"_s || url.scheme() == u"https"_s || url.isLocalFile();
    return url.isValid() && isPage ? std::optional(url) : std::nullopt;
}

struct TextsLook {
    QString what; ///< tells a screen reader what the sentence is
    int gap = 0;
};

QWidget *makeTexts(const Theme &theme, const TextsLook &look, const QString &sentence,
    const QStringList &terms, const QString &translation, QWidget *parent)
{
    auto *holder = new QWidget(parent);
    auto *column = bareLayout<QVBoxLayout>(holder, look.gap);
    if (!sentence.isEmpty()) {
        auto *english = makeReadText(theme, u"sentence"_s, look.what, sentence, {}, holder);
        for (const TextRange &range : WordPattern::allOccurrences(sentence, terms))
            english->mark(range.start, range.length);
        column->addWidget(english);
    }
    if (!translation.isEmpty())
        column->addWidget(makeReadText(theme, u"sentenceZh"_s, u"句子的意思"_s, translation,
            {.type = TextType::small, .tone = Tone::ink2}, holder));
    return holder;
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
    auto *button = makeButton(
        theme, u"source"_s, shown, {.kind = ButtonKind::plain, .icon = Icon::link, .type = TextType::tiny});
    button->setAccessibleName(line);
    setPlainToolTip(*button, link->toString());
    QObject::connect(
        button, &QPushButton::clicked, button, [url = *link] { QDesktopServices::openUrl(url); });
    return button;
}

QWidget *makeSentence(const Theme &theme, const QString &sentence, const QStringList &terms,
    const QString &translation, QWidget *parent)
{
    return makeTexts(theme, {.what = u"例句"_s, .gap = 0}, sentence, terms, translation, parent);
}

QWidget *makeQuote(
    const Theme &theme, const QString &sentence, const QStringList &terms, const QString &translation)
{
    auto *quote = new QWidget;
    auto *layout = bareLayout<QHBoxLayout>(quote, theme.points(12));
    QFrame *rule = makeArea(u"rule"_s);
    rule->setFixedWidth(theme.points(2));
    layout->addWidget(rule);
    layout->addWidget(
        makeTexts(theme, {.what = u"原句"_s, .gap = theme.points(3)}, sentence, terms, translation, quote),
        1);
    return quote;
}

} // namespace nimbrelle
