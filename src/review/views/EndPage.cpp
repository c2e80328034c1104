#include "review/views/EndPage.h"

#include "review/views/AnswerLines.h"
#include "widgets/Controls.h"
#include "widgets/IconArt.h"
#include "widgets/Layouts.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double ringSize = 112;
constexpr double iconSize = 34;
constexpr double widestLine = 400;
constexpr double widerButton = 16; // than its label asks for

/// The brush ring with the screen's icon in its middle.
class RingPicture : public QWidget {
public:
    RingPicture(const Theme &theme, Icon icon, const QColor &colour)
        : m_theme(theme), m_icon(icon), m_colour(colour)
    {
        setFixedSize(theme.points(ringSize), theme.points(ringSize));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.save();
        painter.translate(rect().toRectF().center());
        const double scale = width() / 0.7; // the shapes fill the middle of their square, with y upward
        painter.scale(scale, -scale);
        painter.translate(-0.5, -0.5);
        painter.fillPath(ensoPath(1), m_theme.colour(Tone::ink, 0.88));
        painter.fillPath(leafPath(1), m_theme.colour(Tone::leaf));
        painter.restore();
        const double size = m_theme.points(iconSize);
        const QPixmap icon = iconPixmap(m_icon, size, devicePixelRatioF(), m_colour);
        painter.drawPixmap(QPointF((width() - size) / 2, (height() - size) / 2), icon);
    }

private:
    const Theme &m_theme;
    const Icon m_icon;
    const QColor m_colour;
};

/// A long list of words wraps.
QLabel *makeCentred(const Theme &theme, const QString &name, const QString &text, TextType type, Tone tone)
{
    auto *label = makeLabel(theme, text, type, tone);
    label->setObjectName(name);
    const int line = label->maximumHeight();
    const int width = theme.points(widestLine);
    if (label->sizeHint().width() <= width)
        return label;
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label->setFixedWidth(width);
    label->setFixedHeight(std::max(line, label->heightForWidth(width)));
    return label;
}

} // namespace

EndPage::EndPage(const Theme &theme) : m_theme(theme), m_rows(new QVBoxLayout(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
    m_rows->addStretch(1);
}

EndPage::EndPage(const Theme &theme, const ReviewScreen::Summary &summary) : EndPage(theme)
{
    setObjectName(u"finished"_s);
    addPicture(Icon::party, theme.colour(Tone::accent));
    addTitle(u"这一轮做完了"_s);
    addLine(u"figures"_s, summary.figures, 8, true);
    addMarkedLine(u"levelUps"_s, Icon::arrowUpLine, summary.levelUps, 14);
    addMarkedLine(u"graduated"_s, Icon::cap, summary.graduated, summary.levelUps ? 6 : 14);
    if (summary.comfort)
        addLine(u"comfort"_s, *summary.comfort, 14, false);
    auto *row = bareLayout<QHBoxLayout>(nullptr, theme.points(10));
    row->addStretch();
    const auto addButton = [&](const QString &name, const QString &text, ButtonKind kind,
                               void (EndPage::*pressed)()) {
        auto *button = makeButton(theme, name, text, {kind, std::nullopt, TextType::reading});
        button->setFixedHeight(theme.points(40));
        button->setMinimumWidth(
            std::max(theme.points(82), button->sizeHint().width() + theme.points(widerButton)));
        button->setProperty("large", true);
        connect(button, &QPushButton::clicked, this, pressed);
        row->addWidget(button);
    };
    if (summary.offersAgain)
        addButton(u"again"_s, u"再来一轮"_s, ButtonKind::outlined, &EndPage::againPressed);
    addButton(u"close"_s, u"关闭"_s, ButtonKind::primary, &EndPage::closePressed);
    row->addStretch();
    m_rows->addSpacing(theme.points(20));
    m_rows->addLayout(row);
    m_rows->addStretch(1);
}

EndPage::EndPage(const Theme &theme, const ReviewScreen::EmptyRound &empty) : EndPage(theme)
{
    using Picture = ReviewScreen::EmptyRound::Picture;
    setObjectName(u"empty"_s);
    const bool isDone = empty.picture == Picture::done;
    const Icon icon = isDone                ? Icon::checkCircle
        : empty.picture == Picture::letters ? Icon::cursor
                                            : Icon::tray;
    addPicture(icon, theme.colour(isDone ? Tone::good : Tone::accent));
    addTitle(empty.title);
    double gap = 6;
    for (const QString &line : empty.lines)
        addLine(u"line"_s, line, std::exchange(gap, 2), false);
    if (empty.offersMore) {
        auto *more = makeButton(theme, u"more"_s, u"想多学？再加 5 个新词"_s, {.type = TextType::reading});
        more->setFixedHeight(theme.points(40));
        more->setMinimumWidth(more->sizeHint().width() + theme.points(widerButton));
        more->setProperty("large", true);
        connect(more, &QPushButton::clicked, this, &EndPage::morePressed);
        m_rows->addSpacing(theme.points(20));
        m_rows->addWidget(more, 0, Qt::AlignHCenter);
    }
    m_rows->addStretch(1);
}

void EndPage::addPicture(Icon icon, const QColor &colour)
{
    m_rows->addWidget(new RingPicture(m_theme, icon, colour), 0, Qt::AlignHCenter);
}

void EndPage::addTitle(const QString &text)
{
    m_rows->addSpacing(m_theme.points(14));
    m_rows->addWidget(
        makeCentred(m_theme, u"title"_s, text, TextType::heading, Tone::ink), 0, Qt::AlignHCenter);
}

void EndPage::addLine(const QString &name, const QString &text, double gap, bool isMain)
{
    m_rows->addSpacing(m_theme.points(gap));
    m_rows->addWidget(makeCentred(m_theme, name, text, isMain ? TextType::reading : TextType::text,
                          isMain ? Tone::ink : Tone::ink2),
        0, Qt::AlignHCenter);
}

void EndPage::addMarkedLine(const QString &name, Icon icon, const std::optional<QString> &text, double gap)
{
    if (!text)
        return;
    auto *row = bareLayout<QHBoxLayout>(nullptr, m_theme.points(8));
    row->addStretch();
    row->addWidget(makeIconLabel(m_theme, icon, 16, m_theme.colour(Tone::accent)));
    row->addWidget(makeCentred(m_theme, name, *text, TextType::text, Tone::ink));
    row->addStretch();
    m_rows->addSpacing(m_theme.points(gap));
    m_rows->addLayout(row);
}

} // namespace nimbrelle
