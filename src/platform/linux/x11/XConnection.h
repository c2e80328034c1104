#pragma once

#include "platform/linux/x11/XProtocol.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>

#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

class QSocketNotifier;

namespace nimbrelle {

struct FreeWithC {
    void operator()(void *block) const { std::free(block); }
};
/// An answer or an event of the X server; null where the server reported an error, such as a window gone.
template <typename Reply> using XReply = std::unique_ptr<Reply, FreeWithC>;

/// Our own connection to the X server, apart from the toolkit's. All events of one connection come in the
/// server's order, which is why every adapter shares this one: whether a selection was claimed before or
/// after a mouse press is told by the order alone. Main thread.
class XConnection final : public QObject {
    Q_OBJECT

public:
    /// Connects to the display that DISPLAY names.
    XConnection();
    ~XConnection() override;

    /// False without a display, and for good once the server has gone; nothing else may be called then.
    bool isOpen() const { return m_connection && xcb_connection_has_error(m_connection) == 0; }

    xcb_connection_t *get() const { return m_connection; }
    const xcb_screen_t &screen() const { return *m_screen; }
    int screenNumber() const { return m_screenNumber; }
    xcb_window_t root() const { return m_screen->root; }
    xcb_atom_t atom(const QByteArray &name);
    QByteArray nameOf(xcb_atom_t atom);
    /// Asks for all names in one round trip, so that nameOf() knows them.
    void learnNames(const QList<xcb_atom_t> &atoms);
    /// The first event code of an extension; 0 where the server lacks it.
    quint8 firstEvent(xcb_extension_t *extension) const;
    bool has(xcb_extension_t *extension) const;

    template <typename Reply, typename Cookie>
    XReply<Reply> reply(
        Reply *(*fetch)(xcb_connection_t *, Cookie, xcb_generic_error_t **), Cookie cookie) const
    {
        return XReply<Reply>(fetch(m_connection, cookie, nullptr));
    }

    /// A window property as raw bytes, at most `limit` of them; empty where there is none.
    QByteArray property(xcb_window_t window, xcb_atom_t name, quint32 limit = 1U << 20U) const;
    /// The same as 32-bit values.
    std::vector<quint32> values(xcb_window_t window, xcb_atom_t name) const;

    /// The toolkit's own connection; null where it has none.
    static xcb_connection_t *toolkit();
    /// Sends the requests that the toolkit has collected on it.
    static void flushToolkit();

    /// Whether a window was made by this process, here or by the toolkit.
    bool isOwn(xcb_window_t window) const;
    /// The same, or a window manager's frame round one.
    bool isOwnOrItsFrame(xcb_window_t window) const;

    /// Whether one connection of one program made both.
    bool areOfOneClient(xcb_window_t one, xcb_window_t other) const;

    /// Adds to the events that we want from the root window.
    void selectOnRoot(quint32 eventMask);

    /// `handler` gets every event from now on, until `listener` dies.
    void subscribe(QObject *listener, std::function<void(const xcb_generic_event_t &)> handler);

    /// Hands on what has come in, as the event loop does by itself.
    void dispatch();

signals:
    void drained(); ///< after each batch of events

private:
    QByteArray learnName(xcb_atom_t atom, xcb_get_atom_name_cookie_t asked);
    void dispatchEvent(const xcb_generic_event_t &event);

    xcb_connection_t *m_connection = nullptr;
    int m_screenNumber = 0;
    const xcb_screen_t *m_screen = nullptr;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    QHash<xcb_atom_t, QByteArray> m_names;
    struct Listener {
        QObject *owner;
        std::function<void(const xcb_generic_event_t &)> handler;
    };
    std::vector<Listener> m_listeners;
    quint32 m_rootMask = 0;
    int m_depth = 0;
};

} // namespace nimbrelle
