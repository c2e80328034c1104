#pragma once

#include "platform/linux/wayland/PointerProbe.h"
#include "platform/linux/wayland/Protocols.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <vector>

namespace nimbrelle {

class WaylandConnection;

/// By an invisible surface over each monitor, which is there for as long as the compositor needs to say that
/// the pointer is on it. A program that a button is held down in keeps the pointer until the release, and no
/// surface of this kind gets the keyboard.
class LayerProbe final : public QObject, public PointerProbe {
    Q_OBJECT

public:
    /// `toPixel` turns the compositor's logical pixels into those of the X server's root window.
    LayerProbe(WaylandConnection &connection, std::function<QPoint(QPointF)> toPixel);
    ~LayerProbe() override;

    bool isOffered() const override { return m_shell && m_pointer; }

    void ask(std::function<void(std::optional<Answer>)> answered) override;

private:
    struct Sheet;

    void cover();
    void uncover();
    void configure(Sheet &sheet, quint32 serial, QSize size);
    void enter(wl_surface *surface, QPointF at);
    void finish(std::optional<Answer> answer);

    WaylandConnection &m_connection;
    const std::function<QPoint(QPointF)> m_toPixel;
    zwlr_layer_shell_v1 *m_shell = nullptr;
    wp_viewporter *m_viewporter = nullptr;
    Owned<wl_pointer> m_pointer;
    Owned<wl_buffer> m_pixel; ///< one, for all sheets
    std::vector<std::unique_ptr<Sheet>> m_sheets; ///< one a monitor, while a question is open
    std::function<void(std::optional<Answer>)> m_answered;
    QElapsedTimer m_since;
    QTimer m_watchdog;
};

} // namespace nimbrelle
