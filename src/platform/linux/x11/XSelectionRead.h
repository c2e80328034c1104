#pragma once

#include "platform/linux/x11/XConnection.h"

#include <QCoro/QCoroTask>
#include <QDeadlineTimer>

#include <optional>

namespace nimbrelle {

/// What a program gave for one format.
struct SelectionValue {
    xcb_atom_t type = XCB_ATOM_NONE;
    quint8 unitBits = 8; ///< 8, 16 or 32
    QByteArray bytes; ///< units in the machine's byte order, without the padding of some libraries
};

/// One reading of a selection: one or more formats, one after another, within one time limit. It owns a
/// window of its own, so that an answer that comes too late reaches nobody.
class XSelectionRead final : public QObject {
    Q_OBJECT

public:
    XSelectionRead(XConnection &x, xcb_atom_t selection, std::chrono::milliseconds limit);
    ~XSelectionRead() override;

    /// Absent when the owner refuses the format, or when time is up. A refusal takes the owner's few
    /// milliseconds; nothing here blocks.
    QCoro::Task<std::optional<SelectionValue>> convert(xcb_atom_t target);

    bool isTimedOut() const { return m_isTimedOut; }
    xcb_window_t owner() const;

signals:
    void settled();

private:
    void handleEvent(const xcb_generic_event_t &event);
    void handleNotify(const xcb_selection_notify_event_t &answer);
    void handleIncrement();
    std::optional<SelectionValue> takeProperty() const;
    void settle();

    XConnection &m_x;
    xcb_atom_t m_selection;
    xcb_atom_t m_property;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    QDeadlineTimer m_deadline;
    xcb_atom_t m_target = XCB_ATOM_NONE; ///< what is being waited for; none: nothing
    std::optional<SelectionValue> m_value;
    bool m_isInPieces = false;
    bool m_isTimedOut = false;
};

} // namespace nimbrelle
