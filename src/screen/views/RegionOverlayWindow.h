#pragma once

#include "screen/RegionSelector.h"

#include <QPointer>
#include <QWindow>

namespace nimbrelle {

class Theme;
class WindowSystem;

/// The shade as a window of its own over one screen, above panels and full-screen windows. With a compositor
/// the screen lives on below it; without one it shows the screen as it was when it opened.
class RegionOverlayWindow final : public RegionOverlay {
public:
    /// Both outlive this.
    RegionOverlayWindow(const Theme &theme, const WindowSystem &system);
    ~RegionOverlayWindow() override;

    void open(const QRectF &screenFrame, std::function<void(std::optional<QRectF>)> finished) override;
    void close() override;

private:
    class Shade;

    const Theme &m_theme;
    const WindowSystem &m_system;
    Shade *m_shade = nullptr;
    QPointer<QWindow> m_before; // the window of ours that had the focus
};

} // namespace nimbrelle
