#pragma once

class QWidget;

namespace nimbrelle {

/// Makes Tab go through a page in the order of its layouts, and through what has no layout in the order in
/// which it was made. Without it, a control that is made anew comes last.
void orderTabs(QWidget &page);

} // namespace nimbrelle
