#pragma once

#include "platform/WindowSystem.h"

namespace nimbrelle {

class XConnection;
class XScreens;

class XWindowSystem final : public WindowSystem {
public:
    XWindowSystem(XConnection &x, const XScreens &screens) : m_x(x), m_screens(screens) { }

    bool isComposited() const override;
    void setVisibleArea(quintptr window, const QList<QRect> &area, const QMargins &margin) override;
    void flush() override;
    QPoint toolkitPointOf(QPoint pixel) const override;

private:
    bool hasCompositingOwner() const;
    bool isRedirected() const;

    XConnection &m_x;
    const XScreens &m_screens;
};

} // namespace nimbrelle
