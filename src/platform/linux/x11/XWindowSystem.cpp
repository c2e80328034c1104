#include "platform/linux/x11/XWindowSystem.h"

#include "platform/linux/x11/XConnection.h"
#include "platform/linux/x11/XScreens.h"

#include <array>
#include <vector>

namespace nimbrelle {

namespace {

constexpr quint8 badAccess = 10; // of the core protocol; the library has no name for it

} // namespace

/// A manager may own the selection and yet blend nothing, for compositing is switched off in its settings.
bool XWindowSystem::isComposited() const
{
    return m_x.isOpen() && hasCompositingOwner() && isRedirected();
}

bool XWindowSystem::hasCompositingOwner() const
{
    const auto owner = m_x.reply(xcb_get_selection_owner_reply,
        xcb_get_selection_owner(
            m_x.get(), m_x.atom("_NET_WM_CM_S" + QByteArray::number(m_x.screenNumber()))));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

/// Whether somebody draws the windows in the server's place. Only one client can, and a window that is never
/// shown is enough to be refused. It is gone before the answer is waited for, since a compositor that starts
/// while it is there would be refused itself.
bool XWindowSystem::isRedirected() const
{
    if (!m_x.has(&xcb_composite_id))
        return false;
    xcb_connection_t *connection = m_x.get();
    const auto version = m_x.reply(xcb_composite_query_version_reply,
        xcb_composite_query_version(connection, 0, 4)); // has to come first
    const xcb_window_t window = xcb_generate_id(connection);
    const quint32 isUnmanaged = 1;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, m_x.root(), -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &isUnmanaged);
    const xcb_void_cookie_t redirected =
        xcb_composite_redirect_window_checked(connection, window, XCB_COMPOSITE_REDIRECT_MANUAL);
    xcb_destroy_window(connection, window);
    const XReply<xcb_generic_error_t> refusal(xcb_request_check(connection, redirected));
    return version && refusal && refusal->error_code == badAccess;
}

/// On the toolkit's connection, so that it comes between its creating the window and its showing it.
void XWindowSystem::setVisibleArea(quintptr window, const QList<QRect> &area, const QMargins &margin)
{
    xcb_connection_t *toolkit = XConnection::toolkit();
    if (!m_x.isOpen() || !toolkit || !m_x.has(&xcb_shape_id))
        return;
    const auto id = static_cast<xcb_window_t>(window);
    std::vector<xcb_rectangle_t> pieces;
    for (const QRect &piece : area)
        pieces.push_back({.x = static_cast<qint16>(piece.x()),
            .y = static_cast<qint16>(piece.y()),
            .width = static_cast<quint16>(piece.width()),
            .height = static_cast<quint16>(piece.height())});
    xcb_shape_rectangles(toolkit, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, id, 0, 0,
        static_cast<quint32>(pieces.size()), pieces.data());
    // By this compositors know that the shadow is ours.
    const std::array<quint32, 4> extents{static_cast<quint32>(margin.left()),
        static_cast<quint32>(margin.right()), static_cast<quint32>(margin.top()),
        static_cast<quint32>(margin.bottom())};
    xcb_change_property(toolkit, XCB_PROP_MODE_REPLACE, id, m_x.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL,
        32, extents.size(), extents.data());
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
