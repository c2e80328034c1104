#include "widgets/TabOrder.h"

#include <QLayout>
#include <QList>
#include <QScrollArea>
#include <QWidget>

namespace nimbrelle {

namespace {

void collect(QWidget &widget, QList<QWidget *> &stops);

void collect(const QLayout &layout, QList<QWidget *> &stops)
{
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem *item = layout.itemAt(i);
        if (QWidget *widget = item->widget())
            collect(*widget, stops);
        else if (const QLayout *inner = item->layout())
            collect(*inner, stops);
    }
}

void collect(QWidget &widget, QList<QWidget *> &stops)
{
    if (widget.focusPolicy() & Qt::TabFocus)
        stops.append(&widget);
    const auto *scrolled = qobject_cast<const QScrollArea *>(&widget);
    if (const QLayout *layout = widget.layout())
        collect(*layout, stops);
    else if (scrolled && scrolled->widget())
        collect(*scrolled->widget(), stops);
    else
        for (auto *child : widget.findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
            if (!child->isWindow())
                collect(*child, stops);
}

} // namespace

void orderTabs(QWidget &page)
{
    QList<QWidget *> stops;
    collect(page, stops);
    for (qsizetype i = 1; i < stops.size(); ++i)
        QWidget::setTabOrder(stops[i - 1], stops[i]);
}

} // namespace nimbrelle
