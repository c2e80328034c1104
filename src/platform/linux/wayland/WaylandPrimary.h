#pragma once

#include "platform/Clipboard.h"
#include "platform/linux/wayland/Protocols.h"

#include <QSet>

namespace nimbrelle {

class WaylandConnection;

/// The marked text of all programs, by the data-control protocol, which tells of it without the focus: in its
/// standard form, or in the older one that it was made of.
class WaylandPrimary final : public QObject, public PrimarySelection {
    Q_OBJECT

public:
    explicit WaylandPrimary(WaylandConnection &connection);
    ~WaylandPrimary() override;

    bool isOffered() const { return static_cast<bool>(m_device); }

    quint64 changeCount() const override { return m_changes; }
    QCoro::Task<std::optional<QString>> text() override;

signals:
    /// A program has marked text. Many claim it again with each move of a drag.
    void claimed();
    void gone(); ///< nothing is marked any more

private:
    /// Told of, but not yet what is marked.
    struct Offer {
        Owned<zwlr_data_control_offer_v1> offer;
        QSet<QByteArray> types;
    };

    void addOffer(zwlr_data_control_offer_v1 *offer);
    void setPrimary(zwlr_data_control_offer_v1 *offer);
    std::optional<QByteArray> textType() const;

    WaylandConnection &m_connection;
    Owned<zwlr_data_control_manager_v1> m_manager;
    Owned<zwlr_data_control_device_v1> m_device;
    std::vector<std::unique_ptr<Offer>> m_told;
    std::unique_ptr<Offer> m_primary;
    quint64 m_changes = 0;
};

} // namespace nimbrelle
