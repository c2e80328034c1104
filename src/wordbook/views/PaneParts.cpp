#include "wordbook/views/PaneParts.h"

#include "widgets/Controls.h"
#include "widgets/Layouts.h"
#include "wordparts/WordParts.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double originWidth = 220; // fits beside the buttons of the narrowest window
constexpr double emptyTextWidth = 300;

} // namespace

void addBelow(QVBoxLayout *column, int gap, QWidget *widget)
{
    if (!widget)
        return;
    column->addSpacing(gap);
    column->addWidget(widget);
}

QWidget *makeSectionTitle(const Theme &theme, const QString &title, const QString &note, QWidget *parent)
{
    auto *holder = new QWidget(parent);
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(8));
    QLabel *name = makeLabel(theme, title, TextType::small, Tone::ink2, QFont::DemiBold);
    name->setObjectName(u"sectionTitle"_s);
    row->addWidget(name);
    if (!note.isEmpty())
        row->addWidget(makeLabel(theme, note, TextType::tiny, Tone::ink2), 0, Qt::AlignVCenter);
    row->addStretch();
    return holder;
}

QWidget *makeMarked(const Theme &theme, Icon icon, Tone tone, QWidget *text)
{
    auto *holder = new QWidget;
    fillMarked(holder, theme, icon, tone, text);
    return holder;
}

void fillMarked(QWidget *holder, const Theme &theme, Icon icon, Tone tone, QWidget *text)
{
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(7));
    auto *beside = new QVBoxLayout;
    beside->addSpacing(theme.points(2));
    beside->addWidget(makeIconLabel(theme, icon, 15, theme.colour(tone)));
    beside->addStretch();
    row->addLayout(beside);
    row->addWidget(text, 1);
}

void fillRecord(QWidget *holder, const Theme &theme, QWidget *content, const QList<QPushButton *> &buttons)
{
    auto *row = bareLayout<QHBoxLayout>(holder, theme.points(4));
    row->addWidget(content, 1, Qt::AlignTop);
    row->addSpacing(theme.points(12));
    for (QPushButton *button : buttons)
        row->addWidget(button, 0, Qt::AlignTop);
}

QWidget *makeOrigin(const Theme &theme, const QString &lead, const PageSource &source, QWidget *parent)
{
    QWidget *place = makeSourceLabel(theme, source, false, theme.points(originWidth));
    if (lead.isEmpty() && !place)
        return nullptr;
    auto *holder = new QWidget(parent);
    auto *row = bareLayout<QHBoxLayout>(holder, 0);
    if (!lead.isEmpty()) {
        QLabel *text = makeLabel(theme, place ? lead + u" · "_s : lead, TextType::tiny, Tone::ink2);
        text->setObjectName(u"originLead"_s);
        row->addWidget(text);
    }
    if (place)
        row->addWidget(place);
    row->addStretch();
    return holder;
}

QLineEdit *makeSearchField(const Theme &theme, const QString &name, const QString &what)
{
    QLineEdit *field = makeField(theme, name, what, {});
    field->setProperty("shape", u"search"_s);
    QLabel *lens = makeIconLabel(theme, Icon::magnifier, 14, theme.colour(Tone::ink2));
    lens->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto *inside = new QHBoxLayout(field);
    inside->setContentsMargins(theme.points(10), 0, 0, 0);
    inside->addWidget(lens);
    inside->addStretch();
    field->setTextMargins(theme.points(20), 0, 0, 0);
    return field;
}

void popUpBelow(QMenu &menu, const QPushButton &button)
{
    menu.popup(button.mapToGlobal(QPoint(button.width() - menu.sizeHint().width(), button.height())));
}

QWidget *makeEmptyText(const Theme &theme, const QString &name, const QString &text)
{
    auto *holder = new QWidget;
    auto *column = bareLayout<QVBoxLayout>(holder, 0);
    QLabel *label = makeLabel(theme, text, TextType::text, Tone::ink2);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setMinimumHeight(0);
    label->setMaximumHeight(QWIDGETSIZE_MAX);
    label->setMaximumWidth(theme.points(emptyTextWidth));
    auto *row = bareLayout<QHBoxLayout>(nullptr, 0);
    row->addStretch(1);
    row->addWidget(label, 1000); // up to its greatest width
    row->addStretch(1);
    column->addStretch();
    column->addLayout(row);
    column->addStretch();
    return holder;
}

} // namespace nimbrelle
