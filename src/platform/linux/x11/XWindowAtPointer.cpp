#include "platform/linux/x11/XWindowAtPointer.h"

#include "platform/linux/x11/TextCursor.h"
#include "platform/linux/x11/XFrontApplication.h"
#include "platform/linux/x11/XScreens.h"

#include <algorithm>

namespace nimbrelle {
namespace {

constexpr std::size_t deepest = 32; // of windows in windows

} // namespace

XWindowAtPointer::XWindowAtPointer(
    XConnection &x, const XFrontApplication &applications, const XScreens &screens)
    : m_x(x), m_applications(applications), m_screens(screens)
{
    if (!m_x.isOpen())
        return;
    for (const char *type : {"MENU", "DROPDOWN_MENU", "POPUP_MENU", "COMBO", "TOOLTIP"})
        m_menuTypes.push_back(m_x.atom(QByteArray("_NET_WM_WINDOW_TYPE_") + type));
    m_unmapped = xcb_generate_id(m_x.get());
    xcb_create_window(m_x.get(), 0, m_unmapped, m_x.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, 0, nullptr);
    if (m_x.has(&xcb_xfixes_id)) // asked without it, the library closes the connection
        m_x.reply(xcb_xfixes_query_version_reply, xcb_xfixes_query_version(m_x.get(), 5, 0));
}

PointedWindow XWindowAtPointer::current() const
{
    PointedWindow pointed;
    if (!m_x.isOpen())
        return pointed;
    const Windows windows = windowsAtPointer();
    pointed.hasTextCursor = hasTextCursor();
    // A window manager marks the windows that it manages; what lies round them is its frame.
    const auto client = std::ranges::find_if(
        windows, [this](xcb_window_t each) { return !m_x.values(each, m_x.atom("WM_STATE")).empty(); });
    const bool isManaged = client != windows.end();
    if (isManaged ? m_x.isOwn(*client) : isOwn(windows)) {
        pointed.kind = PointedWindow::Kind::own;
    } else if (!isManaged) {
        if (!windows.empty() && isOfType(windows.front(), m_menuTypes))
            pointed.kind = PointedWindow::Kind::menu;
    } else if (!isOfType(*client, {m_x.atom("_NET_WM_WINDOW_TYPE_DESKTOP")})) {
        pointed.kind = PointedWindow::Kind::content;
        pointed.application = m_applications.applicationOf(*client);
        pointed.area = areaOf(pointed.application);
    }
    return pointed;
}

QRectF XWindowAtPointer::areaOf(const Application &application) const
{
    const auto window = static_cast<xcb_window_t>(application.window);
    if (!m_x.isOpen() || window == XCB_WINDOW_NONE)
        return {};
    const auto sizeAsked = xcb_get_geometry(m_x.get(), window);
    const auto placeAsked = xcb_translate_coordinates(m_x.get(), window, m_x.root(), 0, 0);
    const auto size = m_x.reply(xcb_get_geometry_reply, sizeAsked);
    const auto place = m_x.reply(xcb_translate_coordinates_reply, placeAsked);
    if (!size || !place)
        return {};
    const QPoint corner(place->dst_x, place->dst_y);
    const QPointF topLeft = m_screens.layout().pointOf(corner);
    const QPointF bottomRight = m_screens.layout().pointOf(corner + QPoint(size->width, size->height));
    return {QPointF(topLeft.x(), bottomRight.y()), QPointF(bottomRight.x(), topLeft.y())};
}

// A grab into a window that is not mapped never comes about; the refusal tells whether another's grab stands.
bool XWindowAtPointer::isGrabbed() const
{
    if (!m_x.isOpen())
        return false;
    const auto refusal = m_x.reply(xcb_grab_pointer_reply,
        xcb_grab_pointer(m_x.get(), 0, m_unmapped, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
            XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME));
    return refusal && refusal->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

XWindowAtPointer::Windows XWindowAtPointer::windowsAtPointer() const
{
    Windows windows;
    xcb_window_t window = m_x.root();
    while (m_x.isOpen() && windows.size() < deepest) {
        const auto at = m_x.reply(xcb_query_pointer_reply, xcb_query_pointer(m_x.get(), window));
        if (!at || at->child == XCB_WINDOW_NONE)
            break;
        window = at->child;
        windows.push_back(window);
    }
    return windows;
}

bool XWindowAtPointer::isOwn(const Windows &windows) const
{
    return std::ranges::any_of(windows, [this](xcb_window_t each) { return m_x.isOwn(each); })
        || (!windows.empty() && m_x.isOwnOrItsFrame(windows.front()));
}

bool XWindowAtPointer::isOfType(xcb_window_t window, const std::vector<xcb_atom_t> &types) const
{
    const std::vector<quint32> own = m_x.values(window, m_x.atom("_NET_WM_WINDOW_TYPE"));
    return std::ranges::find_first_of(own, types) != own.end();
}

bool XWindowAtPointer::hasTextCursor() const
{
    const auto answer = m_x.has(&xcb_xfixes_id) ? m_x.reply(xcb_xfixes_get_cursor_image_and_name_reply,
                            xcb_xfixes_get_cursor_image_and_name(m_x.get()))
                                                : nullptr;
    if (!answer)
        return false;
    const quint32 *pixels = xcb_xfixes_get_cursor_image_and_name_cursor_image(answer.get());
    return isTextCursor({
        .name = QByteArray(xcb_xfixes_get_cursor_image_and_name_name(answer.get()),
            xcb_xfixes_get_cursor_image_and_name_name_length(answer.get())),
        .size = QSize(answer->width, answer->height),
        .hotSpot = QPoint(answer->xhot, answer->yhot),
        .pixels = {pixels, pixels + xcb_xfixes_get_cursor_image_and_name_cursor_image_length(answer.get())},
    });
}

} // namespace nimbrelle
