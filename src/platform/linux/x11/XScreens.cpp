#include "platform/linux/x11/XScreens.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace nimbrelle {
namespace {

/// The toolkit's own factor, for the windows that we place are placed by it.
double scaleOf(const QString &monitor)
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return 1;
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto found =
        std::ranges::find_if(screens, [&](const QScreen *screen) { return screen->name() == monitor; });
    if (found != screens.end())
        return (*found)->devicePixelRatio();
    return qGuiApp->devicePixelRatio();
}

QList<QRect> rectangles(const std::vector<quint32> &values)
{
    QList<QRect> read;
    for (std::size_t i = 0; i + 3 < values.size(); i += 4)
        read.append({static_cast<int>(values[i]), static_cast<int>(values[i + 1]),
            static_cast<int>(values[i + 2]), static_cast<int>(values[i + 3])});
    return read;
}

} // namespace

XScreens::XScreens(XConnection &x) : m_x(x)
{
    if (!m_x.isOpen())
        return;
    m_x.selectOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    if (m_x.has(&xcb_randr_id))
        xcb_randr_select_input(m_x.get(), m_x.root(),
            XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE
                | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    m_x.subscribe(this, [this](const xcb_generic_event_t &event) { handleEvent(event); });
}

const ScreenLayout &XScreens::layout() const
{
    if (!m_layout)
        m_layout.emplace(readMonitors());
    return *m_layout;
}

void XScreens::handleEvent(const xcb_generic_event_t &event)
{
    const quint8 type = event.response_type & 0x7fU;
    const quint8 randr = m_x.firstEvent(&xcb_randr_id);
    if (type == XCB_CONFIGURE_NOTIFY || (randr != 0 && (type == randr || type == randr + 1))) {
        m_layout.reset();
        return;
    }
    if (type != XCB_PROPERTY_NOTIFY)
        return;
    const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    if (change.window == m_x.root()
        && (change.atom == m_x.atom("_NET_WORKAREA") || change.atom == m_x.atom("_NET_CLIENT_LIST")
            || change.atom == m_x.atom("_NET_CURRENT_DESKTOP")))
        m_layout.reset();
}

QList<Monitor> XScreens::readMonitors() const
{
    if (!m_x.isOpen())
        return {};
    QList<Monitor> monitors;
    const auto root = m_x.reply(xcb_get_geometry_reply, xcb_get_geometry(m_x.get(), m_x.root()));
    const QSize size = root ? QSize(root->width, root->height) : QSize(1, 1);
    const QList<Strut> struts = readStruts();
    const QList<QRect> workAreas = readWorkAreas();
    const auto add = [&](quint32 id, const QRect &frame, double scale, bool main) {
        QRect work = workAreaOf(frame, size, struts);
        for (const QRect &told : workAreas)
            if (frame.contains(told))
                work &= told;
        monitors.insert(
            main ? 0 : monitors.size(), {.id = id, .frame = frame, .workArea = work, .scale = scale});
    };
    if (m_x.has(&xcb_randr_id)) {
        const auto reply =
            m_x.reply(xcb_randr_get_monitors_reply, xcb_randr_get_monitors(m_x.get(), m_x.root(), 1));
        auto each = reply ? xcb_randr_get_monitors_monitors_iterator(reply.get())
                          : xcb_randr_monitor_info_iterator_t{};
        for (; each.rem > 0; xcb_randr_monitor_info_next(&each)) {
            const auto &monitor = *each.data;
            add(monitor.name, {monitor.x, monitor.y, monitor.width, monitor.height},
                scaleOf(QString::fromUtf8(m_x.nameOf(monitor.name))), monitor.primary != 0);
        }
    }
    if (monitors.isEmpty())
        add(m_x.root(), {QPoint(0, 0), size}, scaleOf({}), true);
    return monitors;
}

QList<Strut> XScreens::readStruts() const
{
    const std::vector<quint32> windows = m_x.values(m_x.root(), m_x.atom("_NET_CLIENT_LIST"));
    const xcb_atom_t partial = m_x.atom("_NET_WM_STRUT_PARTIAL");
    std::vector<xcb_get_property_cookie_t> asked;
    for (const xcb_window_t window : windows)
        asked.push_back(xcb_get_property(m_x.get(), 0, window, partial, XCB_ATOM_CARDINAL, 0, 12));
    QList<Strut> struts;
    for (const auto &cookie : asked) {
        const auto reply = m_x.reply(xcb_get_property_reply, cookie);
        const auto *first =
            reply ? static_cast<const quint32 *>(xcb_get_property_value(reply.get())) : nullptr;
        if (first)
            struts += strutsOf({first, first + xcb_get_property_value_length(reply.get()) / 4});
    }
    return struts;
}

/// What the window manager itself tells: for each monitor where it does that, else for a sole monitor.
QList<QRect> XScreens::readWorkAreas() const
{
    const std::vector<quint32> desktop = m_x.values(m_x.root(), m_x.atom("_NET_CURRENT_DESKTOP"));
    const quint32 current = desktop.empty() ? 0 : desktop.front();
    const QList<QRect> each =
        rectangles(m_x.values(m_x.root(), m_x.atom("_GTK_WORKAREAS_D" + QByteArray::number(current))));
    if (!each.isEmpty())
        return each;
    const QList<QRect> all = rectangles(m_x.values(m_x.root(), m_x.atom("_NET_WORKAREA")));
    return all.mid(std::min(static_cast<qsizetype>(current), std::max(all.size() - 1, qsizetype{0})), 1);
}

} // namespace nimbrelle
