#include "platform/linux/x11/XWindowSystem.h"

#include "platform/linux/x11/XConnection.h"
#include "platform/linux/x11/XScreens.h"

namespace nimbrelle {

bool XWindowSystem::isComposited() const
{
    if (!m_x.isOpen())
        return false;
    const auto owner = m_x.reply(xcb_get_selection_owner_reply,
        xcb_get_selection_owner(
            m_x.get(), m_x.atom("_NET_WM_CM_S" + QByteArray::number(m_x.screenNumber()))));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void XWindowSystem::flush()
{
    m_x.flushToolkit();
}

QPoint XWindowSystem::toolkitPointOf(QPoint pixel) const
{
    return m_screens.layout().toolkitPointOf(pixel);
}

} // namespace nimbrelle
