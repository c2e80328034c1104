#pragma once

#include <QBoxLayout>

namespace nimbrelle {

/// A row or a column without margins; `holder` may be null for one that goes into another layout.
template <class Layout> Layout *bareLayout(QWidget *holder, int spacing)
{
    auto *layout = new Layout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    return layout;
}

} // namespace nimbrelle
