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

/// How much a reading may take, of all its formats together.
struct ReadLimit {
    std::chrono::milliseconds time;
    qsizetype bytes;
};

/// One reading of a selection: one or more formats, one after another, within one limit. It owns a window of
/// its own, so that an answer that comes too late reaches nobody.
class XSelectionRead final : public QObject {
    Q_OBJECT

public:
    XSelectionRead(XConnection &x, xcb_atom_t selection, ReadLimit limit);
    ~XSelectionRead() override;

    /// Absent when the owner refuses the format, or once the limit is reached. A refusal takes the owner's
    /// few milliseconds; nothing here waits for the owner in the main thread.
    QCoro::Task<std::optional<SelectionValue>> convert(xcb_atom_t target);

    bool isGivenUp() const { return m_isGivenUp; } ///< the limit was reached
    xcb_window_t owner() const;

signals:
    void settled();

private:
    void handleEvent(const xcb_generic_event_t &event);
    void handleNotify(const xcb_selection_notify_event_t &answer);
    void handleIncrement();
    std::optional<SelectionValue> takeProperty();
    void settle();
    void giveUp();

    XConnection &m_x;
    xcb_atom_t m_selection;
    xcb_atom_t m_property;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    QDeadlineTimer m_deadline;
    qsizetype m_bytesLeft;
    xcb_atom_t m_target = XCB_ATOM_NONE; ///< what is being waited for; none: nothing
    std::optional<SelectionValue> m_value;
    bool m_isInPieces = false;
    bool m_isGivenUp = false;
};

} // namespace nimbrelle
