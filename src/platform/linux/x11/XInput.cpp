#include "platform/linux/x11/XInput.h"

#include "platform/linux/x11/XKeys.h"
#include "platform/linux/x11/XScreens.h"
#include "platform/linux/x11/XWindowAtPointer.h"

#include <QGuiApplication>
#include <QList>
#include <QStyleHints>

#include <algorithm>
#include <cstring>

namespace nimbrelle {
namespace {

constexpr quint32 leftButton = 1;
constexpr quint32 firstWheelButton = 4;
constexpr quint32 lastWheelButton = 7;
constexpr quint32 anyButtonMask = 0x1f00;
constexpr quint32 controlKeysym = 0xffe3;
constexpr quint32 lowerC = 0x63;
constexpr int clickDistance = 4;

std::chrono::milliseconds doubleClickInterval()
{
    const bool hasToolkit = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    return std::chrono::milliseconds{
        hasToolkit ? QGuiApplication::styleHints()->mouseDoubleClickInterval() : 400};
}

} // namespace

bool isWaylandSession()
{
    return qEnvironmentVariableIsSet("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland";
}

XReply<xcb_query_pointer_reply_t> XPointer::query() const
{
    return m_x.isOpen() ? m_x.reply(xcb_query_pointer_reply, xcb_query_pointer(m_x.get(), m_x.root()))
                        : nullptr;
}

QPoint XPointer::pixel() const
{
    const auto at = query();
    return at ? QPoint(at->root_x, at->root_y) : QPoint();
}

QPointF XPointer::location() const
{
    return m_screens.layout().pointOf(pixel());
}

bool XPointer::isAnyButtonDown() const
{
    const auto at = query();
    return at && (at->mask & anyButtonMask);
}

quint32 XPointer::pressedButtons() const
{
    const auto at = query();
    const quint32 mask = at ? at->mask : quint32{0};
    return ((mask & XCB_BUTTON_MASK_1) ? 1U : 0U) | ((mask & XCB_BUTTON_MASK_3) ? 2U : 0U)
        | ((mask & XCB_BUTTON_MASK_2) ? 4U : 0U);
}

ModifierFlags XPointer::modifiers() const
{
    const auto at = query();
    return at ? flagsOf(at->mask) : 0;
}

QCoro::Task<std::optional<QPointF>> XPointer::locate()
{
    const auto at = query();
    if (!at)
        co_return std::nullopt;
    co_return m_screens.layout().pointOf(QPoint(at->root_x, at->root_y));
}

XKeyboard::XKeyboard(XConnection &x) : m_x(x)
{
    if (!m_x.isOpen())
        return;
    read();
    m_x.subscribe(this, [this](const xcb_generic_event_t &event) {
        if ((event.response_type & 0x7fU) == XCB_MAPPING_NOTIFY)
            read();
    });
}

void XKeyboard::read()
{
    const xcb_setup_t *setup = xcb_get_setup(m_x.get());
    m_first = setup->min_keycode;
    const auto count = static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1);
    if (const auto map = m_x.reply(
            xcb_get_keyboard_mapping_reply, xcb_get_keyboard_mapping(m_x.get(), setup->min_keycode, count))) {
        const xcb_keysym_t *first = xcb_get_keyboard_mapping_keysyms(map.get());
        m_width = map->keysyms_per_keycode;
        m_keysyms.assign(first, first + xcb_get_keyboard_mapping_keysyms_length(map.get()));
    }
    if (const auto map = m_x.reply(xcb_get_pointer_mapping_reply, xcb_get_pointer_mapping(m_x.get()))) {
        const quint8 *first = xcb_get_pointer_mapping_map(map.get());
        m_buttons.assign(first, first + xcb_get_pointer_mapping_map_length(map.get()));
    }
}

quint32 XKeyboard::keysym(xcb_keycode_t key) const
{
    const auto index =
        static_cast<std::size_t>(std::max(key - m_first, 0)) * static_cast<std::size_t>(m_width);
    return index < m_keysyms.size() ? m_keysyms[index] : 0;
}

std::optional<xcb_keycode_t> XKeyboard::keyFor(quint32 keysym) const
{
    const auto found = std::ranges::find(m_keysyms, keysym);
    if (found == m_keysyms.end() || m_width == 0)
        return std::nullopt;
    return static_cast<xcb_keycode_t>(m_first + static_cast<int>(found - m_keysyms.begin()) / m_width);
}

std::optional<xcb_keycode_t> XKeyboard::unmappedKey() const
{
    // From the end: what keyboards with more keys than the layout knows have comes first.
    for (int key = m_first + static_cast<int>(m_keysyms.size()) / std::max(m_width, 1); key-- > m_first;) {
        const auto first = m_keysyms.begin() + (key - m_first) * m_width;
        if (std::all_of(first, first + m_width, [](quint32 keysym) { return keysym == 0; }))
            return static_cast<xcb_keycode_t>(key);
    }
    return std::nullopt;
}

quint32 XKeyboard::logicalButton(quint32 physical) const
{
    return physical >= 1 && physical <= m_buttons.size() ? m_buttons[physical - 1] : physical;
}

bool XKeySender::sendCopy()
{
    const auto control = m_keyboard.keyFor(controlKeysym);
    const auto letter = m_keyboard.keyFor(lowerC);
    if (!m_x.isOpen() || !m_x.has(&xcb_test_id) || !control || !letter || m_pointer.modifiers() != 0)
        return false;
    m_isCopying = true;
    m_copiedAt = 0;
    post({{XCB_KEY_PRESS, *control}, {XCB_KEY_PRESS, *letter}, {XCB_KEY_RELEASE, *letter},
        {XCB_KEY_RELEASE, *control}});
    return true;
}

void XKeySender::tapNothing()
{
    const auto nothing = m_x.isOpen() && m_x.has(&xcb_test_id) ? m_keyboard.unmappedKey() : std::nullopt;
    if (!nothing)
        return;
    m_isCopying = false;
    post({{XCB_KEY_PRESS, *nothing}, {XCB_KEY_RELEASE, *nothing}});
}

void XKeySender::noteTime(quint32 time)
{
    if (m_isCopying)
        m_copiedAt = time;
}

void XKeySender::post(const QList<Stroke> &strokes)
{
    m_firstRequest.reset();
    for (const Stroke &stroke : strokes) {
        m_lastRequest =
            xcb_test_fake_input(m_x.get(), stroke.type, stroke.key, XCB_CURRENT_TIME, m_x.root(), 0, 0, 0)
                .sequence;
        m_firstRequest = m_firstRequest.value_or(m_lastRequest);
    }
    // Whatever comes after the last of them is the user's again.
    xcb_no_operation(m_x.get());
    xcb_flush(m_x.get());
}

XInputMonitor::XInputMonitor(XConnection &x, const XScreens &screens, const XPointer &pointer,
    const XKeyboard &keyboard, XKeySender &sender, const XWindowAtPointer &window)
    : m_x(x)
    , m_screens(screens)
    , m_pointer(pointer)
    , m_keyboard(keyboard)
    , m_sender(sender)
    , m_window(window)
    , m_clicks(doubleClickInterval(), clickDistance)
{
    if (!m_x.isOpen() || isWaylandSession() || !m_x.has(&xcb_input_id) || !m_x.has(&xcb_xkb_id))
        return;
    // Raw events come during other programs' grabs from version 2.1 on.
    const auto version =
        m_x.reply(xcb_input_xi_query_version_reply, xcb_input_xi_query_version(m_x.get(), 2, 2));
    const auto xkb = m_x.reply(xcb_xkb_use_extension_reply, xcb_xkb_use_extension(m_x.get(), 1, 0));
    m_canWatch = version && xkb && xkb->supported
        && (version->major_version > 2 || (version->major_version == 2 && version->minor_version >= 1));
    m_x.subscribe(this, [this](const xcb_generic_event_t &event) { handleEvent(event); });
    connect(&m_x, &XConnection::drained, this, &XInputMonitor::emitMove);
}

void XInputMonitor::start()
{
    if (!canWatch() || m_started)
        return;
    m_started = true;
    m_held = m_pointer.modifiers();
    m_clicks.reset();
    m_pressCount = 0;
    select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE
        | XCB_INPUT_XI_EVENT_MASK_RAW_MOTION | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS);
}

void XInputMonitor::stop()
{
    if (m_started && m_x.isOpen())
        select(0);
    m_started = false;
    m_moved = false;
}

void XInputMonitor::select(quint32 rawEvents) const
{
    struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, rawEvents};
    xcb_input_xi_select_events(m_x.get(), m_x.root(), 1, &mask.head);
    const quint16 state = rawEvents ? XCB_XKB_EVENT_TYPE_STATE_NOTIFY : 0;
    xcb_xkb_select_events(m_x.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY,
        static_cast<quint16>(XCB_XKB_EVENT_TYPE_STATE_NOTIFY & ~state), state, 0, 0, nullptr);
    xcb_flush(m_x.get());
}

void XInputMonitor::handleEvent(const xcb_generic_event_t &event)
{
    if (!m_started)
        return;
    const quint8 type = event.response_type & 0x7fU;
    const bool isOurs = m_sender.caused(event.full_sequence);
    if (type == XCB_GE_GENERIC) {
        const auto &raw = reinterpret_cast<const xcb_input_raw_key_press_event_t &>(event);
        const auto *input = xcb_get_extension_data(m_x.get(), &xcb_input_id);
        if (raw.extension != input->major_opcode)
            return;
        if (isOurs)
            m_sender.noteTime(raw.time);
        else
            handleRawEvent(reinterpret_cast<const xcb_ge_generic_event_t &>(event));
    } else if (isOurs) {
        return;
    } else if (type == m_x.firstEvent(&xcb_xkb_id) && event.pad0 == XCB_XKB_STATE_NOTIFY) {
        handleModifiers(reinterpret_cast<const xcb_xkb_state_notify_event_t &>(event));
    }
}

void XInputMonitor::handleRawEvent(const xcb_ge_generic_event_t &event)
{
    // All raw events are laid out alike.
    const auto &raw = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event);
    if (event.event_type == XCB_INPUT_RAW_MOTION) {
        m_moved |= movesPointer(raw);
        return;
    }
    emitMove();
    if (event.event_type == XCB_INPUT_RAW_KEY_PRESS)
        handleKey(static_cast<xcb_keycode_t>(raw.detail));
    else if (event.event_type == XCB_INPUT_RAW_BUTTON_PRESS)
        handlePress(raw);
    else if (m_keyboard.logicalButton(raw.detail) == leftButton)
        handleRelease();
}

void XInputMonitor::handlePress(const xcb_input_raw_button_press_event_t &event)
{
    const quint32 button = m_keyboard.logicalButton(event.detail);
    if (button >= firstWheelButton && button <= lastWheelButton) {
        if (!m_window.isOwn())
            emit scrolled();
        return;
    }
    if (button != leftButton) {
        m_clicks.reset();
        return;
    }
    if (m_window.isOwn()) {
        m_clicks.reset();
        return;
    }
    const QPoint at = m_pointer.pixel();
    m_pressCount = m_clicks.press(at, event.time);
    emit mousePressed(m_screens.layout().pointOf(at), m_pressCount);
}

void XInputMonitor::handleRelease()
{
    const int count = std::exchange(m_pressCount, 0);
    if (count > 0)
        emit mouseReleased(m_pointer.location(), count);
}

void XInputMonitor::handleKey(xcb_keycode_t key)
{
    const auto pressed = keyOf(m_keyboard.keysym(key));
    if (pressed && !hasOwnFocus())
        emit keyPressed(*pressed);
}

void XInputMonitor::handleModifiers(const xcb_xkb_state_notify_event_t &event)
{
    // What is physically held: latches and locks are in the other masks.
    const ModifierFlags held = flagsOf(event.baseMods);
    if (held == m_held)
        return;
    emitMove();
    const bool isRelease = (held & ~m_held) == 0;
    m_held = held;
    // Somebody who heard of a press also hears of its end, wherever the focus has gone meanwhile.
    if (isRelease || !hasOwnFocus())
        emit modifiersChanged(held);
}

void XInputMonitor::emitMove()
{
    if (!std::exchange(m_moved, false) || !m_started)
        return;
    if (m_pressCount > 0)
        emit mouseDragged(m_pointer.location());
    else if (!m_pointer.isAnyButtonDown())
        emit mouseMoved(m_pointer.location());
}

bool XInputMonitor::hasOwnFocus() const
{
    const auto focus = m_x.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_x.get()));
    return focus && m_x.isOwn(focus->focus);
}

} // namespace nimbrelle
