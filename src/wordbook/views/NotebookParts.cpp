#include "wordbook/views/NotebookParts.h"

#include "widgets/Controls.h"
#include "wordparts/WordParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace nimbrelle::notebook {

using namespace Qt::StringLiterals;

namespace {

constexpr double originWidth = 220; // fits beside the buttons of the narrowest window
constexpr double emptyTextWidth = 300;

} // namespace

QVBoxLayout *makeColumn(QWidget *holder, int spacing)
{
    auto *column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    return column;
}

QHBoxLayout *makeRow(int spacing)
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

void add(QVBoxLayout *column, int gap, QWidget *widget)
{
    if (!widget)
        return;
    column->addSpacing(gap);
    column->addWidget(widget);
}

QWidget *makeSectionTitle(const Theme &theme, const QString &title, const QString &note)
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.points(8));
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
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.points(7));
    auto *beside = new QVBoxLayout;
    beside->addSpacing(theme.points(2));
    beside->addWidget(makeIconLabel(theme, icon, 15, theme.colour(tone)));
    beside->addStretch();
    row->addLayout(beside);
    row->addWidget(text, 1);
    return holder;
}

QWidget *makeRecord(const Theme &theme, QWidget *content, const QList<QPushButton *> &buttons)
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.points(4));
    row->addWidget(content, 1, Qt::AlignTop);
    row->addSpacing(theme.points(12));
    for (QPushButton *button : buttons)
        row->addWidget(button, 0, Qt::AlignTop);
    return holder;
}

QWidget *makeOrigin(const Theme &theme, const QString &lead, const PageSource &source)
{
    QWidget *place = makeSourceLabel(theme, source, false, theme.points(originWidth));
    if (lead.isEmpty() && !place)
        return nullptr;
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
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

QWidget *makeEmptyText(const Theme &theme, const QString &name, const QString &text)
{
    auto *holder = new QWidget;
    auto *column = makeColumn(holder);
    QLabel *label = makeLabel(theme, text, TextType::text, Tone::ink2);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setMinimumHeight(0);
    label->setMaximumHeight(QWIDGETSIZE_MAX);
    label->setMaximumWidth(theme.points(emptyTextWidth));
    auto *row = makeRow(0);
    row->addStretch(1);
    row->addWidget(label, 1000); // up to its greatest width
    row->addStretch(1);
    column->addStretch();
    column->addLayout(row);
    column->addStretch();
    return holder;
}

} // namespace nimbrelle::notebook
