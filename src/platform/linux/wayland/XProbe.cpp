#include "platform/linux/wayland/XProbe.h"

#include "platform/linux/x11/XScreens.h"

#include <array>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto longestDrag = 10s; // after which nobody waits for the release any more
constexpr quint8 depthWithAlpha = 32;

xcb_visualid_t visualWithAlpha(const xcb_screen_t &screen)
{
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth))
        if (depth.data->depth == depthWithAlpha)
            for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0;
                 xcb_visualtype_next(&visual))
                if (visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR)
                    return visual.data->visual_id;
    return XCB_NONE;
}

} // namespace

XProbe::XProbe(XConnection &x, const XScreens &screens) : m_x(x), m_screens(screens)
{
    m_watchdog.setSingleShot(true);
    connect(&m_watchdog, &QTimer::timeout, this, [this] { finish(std::nullopt); });
    if (!m_x.isOpen())
        return;
    create();
    m_x.subscribe(this, [this](const xcb_generic_event_t &event) { handleEvent(event); });
}

XProbe::~XProbe()
{
    if (!isOffered())
        return;
    xcb_destroy_window(m_x.get(), m_window);
    xcb_flush(m_x.get());
}

void XProbe::create()
{
    const xcb_visualid_t visual = visualWithAlpha(m_x.screen());
    if (visual == XCB_NONE)
        return;
    const xcb_colormap_t colors = xcb_generate_id(m_x.get());
    xcb_create_colormap(m_x.get(), XCB_COLORMAP_ALLOC_NONE, colors, m_x.root(), visual);
    m_window = xcb_generate_id(m_x.get());
    constexpr quint32 transparent = 0;
    const std::array<quint32, 5> values{
        transparent, transparent, 1, XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_BUTTON_PRESS, colors};
    xcb_create_window(m_x.get(), depthWithAlpha, m_window, m_x.root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK
            | XCB_CW_COLORMAP,
        values.data());
    xcb_flush(m_x.get());
}

void XProbe::ask(std::function<void(std::optional<Answer>)> answered)
{
    finish(std::nullopt);
    m_answered = std::move(answered);
    if (!isOffered() || m_screens.layout().bounds().isEmpty()) {
        QMetaObject::invokeMethod(
            this, [this] { finish(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    m_since.start();
    m_watchdog.start(longestDrag);
    cover();
}

void XProbe::cover()
{
    const QRect all = m_screens.layout().bounds();
    const std::array<quint32, 5> place{static_cast<quint32>(all.x()), static_cast<quint32>(all.y()),
        static_cast<quint32>(all.width()), static_cast<quint32>(all.height()), XCB_STACK_MODE_ABOVE};
    xcb_configure_window(m_x.get(), m_window,
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT
            | XCB_CONFIG_WINDOW_STACK_MODE,
        place.data());
    m_covered = xcb_map_window(m_x.get(), m_window).sequence;
    m_isCovering = true;
    xcb_flush(m_x.get());
}

void XProbe::uncover()
{
    m_isCovering = false;
    if (!isOffered())
        return;
    xcb_unmap_window(m_x.get(), m_window);
    xcb_flush(m_x.get());
}

// An entering is not listened to: the place that the first one tells is an old one.
void XProbe::handleEvent(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (!m_isCovering || (type != XCB_MOTION_NOTIFY && type != XCB_BUTTON_PRESS))
        return;
    static_assert(sizeof(xcb_motion_notify_event_t) == sizeof(xcb_button_press_event_t));
    const auto &pointer = reinterpret_cast<const xcb_motion_notify_event_t &>(event);
    if (pointer.event != m_window || static_cast<qint32>(event.full_sequence - m_covered) < 0)
        return;
    const Answer answer{.pixel = QPoint(pointer.root_x, pointer.root_y),
        .waited = std::chrono::milliseconds(m_since.elapsed())};
    uncover(); // first of all, so that nothing of the user's reaches us
    finish(answer);
}

void XProbe::finish(std::optional<Answer> answer)
{
    m_watchdog.stop();
    if (m_isCovering)
        uncover();
    if (const auto answered = std::exchange(m_answered, {}))
        answered(answer);
}

} // namespace nimbrelle
