#pragma once

#include "platform/linux/wayland/Protocols.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QRect>

#include <memory>
#include <vector>

class QSocketNotifier;

namespace nimbrelle {

/// One monitor of the compositor, in its logical pixels: origin at the top left of all of them, y downward.
struct WaylandOutput {
    wl_output *output = nullptr;
    QRect area;

    bool operator==(const WaylandOutput &) const = default;
};

/// Our own connection to the Wayland compositor, beside the toolkit's to the X server that the compositor
/// runs. Main thread.
class WaylandConnection final : public QObject {
    Q_OBJECT

public:
    /// Connects to the display that WAYLAND_DISPLAY names, and learns what it offers: two round trips.
    WaylandConnection();
    ~WaylandConnection() override;

    /// False without a compositor, and for good once it has gone; nothing else may be called then.
    bool isOpen() const { return m_display && wl_display_get_error(m_display) == 0; }

    bool offers(const wl_interface &interface, quint32 version = 1) const;
    /// The one object of an interface, in that version; null where it is not offered. The caller owns it.
    template <typename Object> Object *bind(const wl_interface &interface, quint32 version) const
    {
        return static_cast<Object *>(bindAny(interface, version));
    }

    wl_compositor *compositor() const { return m_compositor; }
    wl_shm *memory() const { return m_memory; }
    wl_seat *seat() const { return m_seat; } ///< the first one; null where there is none
    QList<WaylandOutput> outputs() const;

    /// Sends what was asked for since; to be called after each batch of requests.
    void flush();
    /// Waits until the compositor has carried out all requests. Only for a start.
    void roundTrip();

signals:
    void closed(); ///< the compositor has gone

private:
    struct Global {
        quint32 name;
        QByteArray interface;
        quint32 version;
    };
    struct Output;

    void *bindAny(const wl_interface &interface, quint32 version) const;
    void addGlobal(quint32 name, const char *interface, quint32 version);
    void removeGlobal(quint32 name);
    void addOutput(const Global &global);
    void followOutput(Output &output);
    void read();
    void fail();

    static const wl_registry_listener registryListener;

    wl_display *m_display = nullptr;
    wl_registry *m_registry = nullptr;
    wl_compositor *m_compositor = nullptr;
    wl_shm *m_memory = nullptr;
    wl_seat *m_seat = nullptr;
    zxdg_output_manager_v1 *m_outputManager = nullptr;
    std::vector<Global> m_globals;
    std::vector<std::unique_ptr<Output>> m_outputs;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
};

} // namespace nimbrelle
