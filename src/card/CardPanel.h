#pragma once

#include <QRectF>
#include <QSizeF>

namespace nimbrelle {

/// The floating window that shows the card. It never takes the focus and stays above all windows. Frames are
/// in global points, origin at the bottom left of the main screen, y upward.
class CardPanel {
public:
    virtual ~CardPanel() = default;

    /// The size that the present content needs on a screen with `available` free for windows.
    virtual QSizeF fittingSize(QSizeF available) = 0;

    virtual void place(const QRectF &frame) = 0;

    /// Shows the panel above all windows; its content is on the screen when the call returns.
    virtual void bringToFront() = 0;
    virtual void orderOut() = 0;

    virtual bool isVisible() const = 0;
    virtual QRectF frame() const = 0;
};

} // namespace nimbrelle
