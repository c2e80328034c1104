#pragma once

#include "platform/linux/x11/XSelectionRead.h"

#include <QList>
#include <QMap>

#include <vector>

namespace nimbrelle {

using SelectionValues = QMap<xcb_atom_t, SelectionValue>; ///< by format

/// Owns a selection and gives its values to whoever asks, large ones in pieces.
class XSelectionOwner final : public QObject {
    Q_OBJECT

public:
    XSelectionOwner(XConnection &x, xcb_atom_t selection);
    /// Leaves the content to a clipboard manager where there is one, for at most 0.3 seconds.
    ~XSelectionOwner() override;

    /// Takes the selection, or leaves it without an owner when there are no values.
    void own(SelectionValues values);

    /// What owner() of a reading is while the selection is ours.
    xcb_window_t window() const { return m_window; }
    const SelectionValues &values() const { return m_values; }

private:
    struct Transfer {
        xcb_window_t requestor;
        xcb_atom_t property;
        SelectionValue value;
        qsizetype sent = 0;
    };

    void handleEvent(const xcb_generic_event_t &event);
    void serve(const xcb_selection_request_event_t &request);
    bool give(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    void giveValue(xcb_window_t requestor, xcb_atom_t property, const SelectionValue &value);
    bool giveSeveral(xcb_window_t requestor, xcb_atom_t property);
    void sendNextPiece(xcb_window_t requestor, xcb_atom_t property);
    void handOver();
    QList<xcb_atom_t> targets() const;
    qsizetype pieceSize() const;

    XConnection &m_x;
    xcb_atom_t m_selection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    SelectionValues m_values;
    std::vector<Transfer> m_transfers;
    quint32 m_ownedSince = XCB_CURRENT_TIME;
    bool m_isOwner = false;
    bool m_isHandedOver = false;
};

} // namespace nimbrelle
