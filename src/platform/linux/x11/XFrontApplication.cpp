#include "platform/linux/x11/XFrontApplication.h"

#include "platform/linux/ProgramKinds.h"

namespace nimbrelle {
namespace {

QByteArray bytesOf(const XReply<xcb_get_property_reply_t> &reply)
{
    if (!reply)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get())};
}

std::optional<QString> textOf(const QByteArray &bytes)
{
    return bytes.isEmpty() ? std::nullopt : std::optional{QString::fromUtf8(bytes)};
}

} // namespace

std::optional<Application> XFrontApplication::current() const
{
    if (!m_x.isOpen())
        return std::nullopt;
    const std::vector<quint32> active = m_x.values(m_x.root(), m_x.atom("_NET_ACTIVE_WINDOW"));
    if (active.empty() || active.front() == XCB_WINDOW_NONE)
        return std::nullopt;
    return applicationOf(active.front());
}

Application XFrontApplication::applicationOf(xcb_window_t window) const
{
    const auto ask = [&](xcb_atom_t name) {
        return xcb_get_property(m_x.get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, 4096);
    };
    const auto classAsked = ask(XCB_ATOM_WM_CLASS);
    const auto titleAsked = ask(m_x.atom("_NET_WM_NAME"));
    const auto oldTitleAsked = ask(XCB_ATOM_WM_NAME);
    const auto processAsked = ask(m_x.atom("_NET_WM_PID"));
    const QList<QByteArray> classes = bytesOf(m_x.reply(xcb_get_property_reply, classAsked)).split('\0');
    const QByteArray title = bytesOf(m_x.reply(xcb_get_property_reply, titleAsked));
    const QByteArray oldTitle = bytesOf(m_x.reply(xcb_get_property_reply, oldTitleAsked));
    const auto process = m_x.reply(xcb_get_property_reply, processAsked);

    Application application = m_x.isOwn(window) ? ownProgram()
                                                : programOf({.instance = QString::fromUtf8(classes.value(0)),
                                                                .name = QString::fromUtf8(classes.value(1))},
                                                    m_names);
    application.window = window;
    application.windowTitle = textOf(title.isEmpty() ? oldTitle : title);
    if (process && xcb_get_property_value_length(process.get()) >= 4)
        application.process = *static_cast<const quint32 *>(xcb_get_property_value(process.get()));
    return application;
}

void XFrontApplication::activate(const Application &application)
{
    if (!m_x.isOpen() || application.window == XCB_WINDOW_NONE)
        return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(application.window);
    message.type = m_x.atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2; // asked by the user's own hand, so no focus-stealing guard holds it up
    xcb_send_event(m_x.get(), 0, m_x.root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char *>(&message));
    xcb_flush(m_x.get());
}

QList<WindowClass> XFrontApplication::openWindows() const
{
    QList<WindowClass> classes;
    if (!m_x.isOpen())
        return classes;
    for (const quint32 window : m_x.values(m_x.root(), m_x.atom("_NET_CLIENT_LIST"))) {
        const QList<QByteArray> halves = m_x.property(window, XCB_ATOM_WM_CLASS, 1024).split('\0');
        if (!m_x.isOwn(window))
            classes.append({QString::fromUtf8(halves.value(0)), QString::fromUtf8(halves.value(1))});
    }
    return classes;
}

} // namespace nimbrelle
