#include "platform/linux/x11/XConnection.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <cstring>

namespace nimbrelle {
namespace {

const xcb_screen_t *screenOf(xcb_connection_t *connection, int number)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

bool isMadeBy(xcb_connection_t *connection, xcb_window_t window)
{
    const xcb_setup_t *setup = xcb_get_setup(connection);
    return setup && (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

} // namespace

XConnection::XConnection()
{
    m_connection = xcb_connect(nullptr, &m_screenNumber);
    if (!isOpen())
        return;
    m_screen = screenOf(m_connection, m_screenNumber);
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &XConnection::dispatch);
    // A reply that somebody waits for may bring events with it, and then the socket stays silent about them.
    // A loop that only looks, as one with a time limit does, tells that it is awake and never that it blocks.
    if (auto *dispatcher = QAbstractEventDispatcher::instance()) {
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &XConnection::dispatch);
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, &XConnection::dispatch);
    }
}

XConnection::~XConnection()
{
    m_notifier.reset();
    xcb_disconnect(m_connection);
}

xcb_atom_t XConnection::atom(const QByteArray &name)
{
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.constEnd())
        return *known;
    const auto answer = reply(xcb_intern_atom_reply,
        xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.constData()));
    const xcb_atom_t made = answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    m_atoms.insert(name, made);
    m_names.insert(made, name);
    return made;
}

QByteArray XConnection::nameOf(xcb_atom_t atom)
{
    const auto known = m_names.constFind(atom);
    if (known != m_names.constEnd())
        return *known;
    return learnName(atom, xcb_get_atom_name(m_connection, atom));
}

void XConnection::learnNames(const QList<xcb_atom_t> &atoms)
{
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
    for (const xcb_atom_t atom : atoms)
        if (!m_names.contains(atom))
            asked.emplace_back(atom, xcb_get_atom_name(m_connection, atom));
    for (const auto &[atom, cookie] : asked)
        learnName(atom, cookie);
}

QByteArray XConnection::learnName(xcb_atom_t atom, xcb_get_atom_name_cookie_t asked)
{
    const auto answer = reply(xcb_get_atom_name_reply, asked);
    if (!answer)
        return {};
    const QByteArray name(xcb_get_atom_name_name(answer.get()), xcb_get_atom_name_name_length(answer.get()));
    m_names.insert(atom, name);
    return name;
}

quint8 XConnection::firstEvent(xcb_extension_t *extension) const
{
    const auto *data = xcb_get_extension_data(m_connection, extension);
    return data && data->present ? data->first_event : quint8{0};
}

bool XConnection::has(xcb_extension_t *extension) const
{
    const auto *data = xcb_get_extension_data(m_connection, extension);
    return data && data->present;
}

QByteArray XConnection::property(xcb_window_t window, xcb_atom_t name, quint32 limit) const
{
    const auto answer = reply(xcb_get_property_reply,
        xcb_get_property(m_connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, limit / 4));
    if (!answer)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(answer.get())),
        xcb_get_property_value_length(answer.get())};
}

std::vector<quint32> XConnection::values(xcb_window_t window, xcb_atom_t name) const
{
    const QByteArray bytes = property(window, name);
    std::vector<quint32> read(static_cast<std::size_t>(bytes.size()) / sizeof(quint32));
    if (!read.empty())
        std::memcpy(read.data(), bytes.constData(), read.size() * sizeof(quint32));
    return read;
}

xcb_connection_t *XConnection::toolkit()
{
    const auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    const auto *native =
        application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return native ? native->connection() : nullptr;
}

void XConnection::flushToolkit()
{
    if (xcb_connection_t *connection = toolkit())
        xcb_flush(connection);
}

bool XConnection::isOwn(xcb_window_t window) const
{
    xcb_connection_t *other = toolkit();
    return isMadeBy(m_connection, window) || (other && isMadeBy(other, window));
}

bool XConnection::isOwnOrItsFrame(xcb_window_t window) const
{
    if (isOwn(window))
        return true;
    const auto tree = reply(xcb_query_tree_reply, xcb_query_tree(m_connection, window));
    if (!tree)
        return false;
    const xcb_window_t *first = xcb_query_tree_children(tree.get());
    return std::any_of(first, first + xcb_query_tree_children_length(tree.get()),
        [this](xcb_window_t child) { return isOwn(child); });
}

bool XConnection::areOfOneClient(xcb_window_t one, xcb_window_t other) const
{
    const quint32 base = ~xcb_get_setup(m_connection)->resource_id_mask;
    return one != XCB_WINDOW_NONE && other != XCB_WINDOW_NONE && (one & base) == (other & base);
}

void XConnection::selectOnRoot(quint32 eventMask)
{
    m_rootMask |= eventMask;
    xcb_change_window_attributes(m_connection, root(), XCB_CW_EVENT_MASK, &m_rootMask);
    xcb_flush(m_connection);
}

void XConnection::subscribe(QObject *listener, std::function<void(const xcb_generic_event_t &)> handler)
{
    m_listeners.push_back({listener, std::move(handler)});
    connect(listener, &QObject::destroyed, this, [this](QObject *gone) {
        // Emptied, not erased: the owner may die while its own or another's handler is being called.
        for (Listener &each : m_listeners)
            if (each.owner == gone)
                each = {};
    });
}

void XConnection::dispatch()
{
    if (!isOpen()) {
        if (m_notifier)
            m_notifier->setEnabled(false);
        return;
    }
    // Whoever handles an event may run an event loop of its own, and so come here again.
    ++m_depth;
    bool any = false;
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        any = true;
        dispatchEvent(*event);
    }
    if (--m_depth == 0)
        std::erase_if(m_listeners, [](const Listener &each) { return !each.owner; });
    if (any)
        emit drained();
    xcb_flush(m_connection);
}

void XConnection::dispatchEvent(const xcb_generic_event_t &event)
{
    // By index: a handler may add another one.
    for (std::size_t i = 0; i < m_listeners.size(); ++i) {
        const auto handler = m_listeners[i].handler;
        if (handler)
            handler(event);
    }
}

} // namespace nimbrelle
