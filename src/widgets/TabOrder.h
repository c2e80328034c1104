#pragma once

class QWidget;

namespace nimbrelle {

/// Makes Tab go through a page in the order of its layouts, whenever its controls were made: what is made
/// anew stands last in the toolkit's order. Only what stands in a layout is ordered.
void orderTabs(QWidget &page);

} // namespace nimbrelle
