#pragma once

#include "platform/WindowSystem.h"

namespace nimbrelle {

class XConnection;
class XScreens;

class XWindowSystem final : public WindowSystem {
public:
    XWindowSystem(XConnection &x, const XScreens &screens) : m_x(x), m_screens(screens) { }

    bool isComposited() const override;
    void flush() override;
    QPoint toolkitPointOf(QPoint pixel) const override;

private:
    XConnection &m_x;
    const XScreens &m_screens;
};

} // namespace nimbrelle
