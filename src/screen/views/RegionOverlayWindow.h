#pragma once

#include "screen/RegionOverlay.h"

#include <QPointer>
#include <QWindow>

namespace nimbrelle {

class Theme;
class WindowSystem;

/// The overlay as a window over one screen, above panels and full-screen windows. With a compositor the
/// screen shows through; without one the window shows the screen as it was when it opened.
class RegionOverlayWindow final : public RegionOverlay {
public:
    /// Both outlive this.
    RegionOverlayWindow(const Theme &theme, const WindowSystem &system);
    ~RegionOverlayWindow() override;

    void open(const QRectF &screenFrame, std::function<void(std::optional<QRectF>)> finished) override;
    void close() override;

private:
    class OverlayWidget;

    const Theme &m_theme;
    const WindowSystem &m_system;
    OverlayWidget *m_widget = nullptr;
    QPointer<QWindow> m_previousFocus; // if it was a window of ours
};

} // namespace nimbrelle
