#include "platform/linux/x11/XSelectionRead.h"

#include <QCoro/QCoroSignal>
#include <QTimer>

namespace nimbrelle {
XSelectionRead::XSelectionRead(XConnection &x, xcb_atom_t selection, ReadLimit limit)
    : m_x(x)
    , m_selection(selection)
    , m_property(x.atom("NIMBRELLE_SELECTION"))
    , m_deadline(limit.time)
    , m_bytesLeft(limit.bytes)
{
    m_window = xcb_generate_id(m_x.get());
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_x.get(), 0, m_window, m_x.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    m_x.subscribe(this, [this](const xcb_generic_event_t &event) { handleEvent(event); });
}

XSelectionRead::~XSelectionRead()
{
    if (m_x.isOpen())
        xcb_destroy_window(m_x.get(), m_window);
}

xcb_window_t XSelectionRead::owner() const
{
    const auto reply =
        m_x.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(m_x.get(), m_selection));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

QCoro::Task<std::optional<SelectionValue>> XSelectionRead::convert(xcb_atom_t target)
{
    if (m_isGivenUp || !m_x.isOpen())
        co_return std::nullopt;
    m_target = target;
    m_value.reset();
    m_isInPieces = false;
    xcb_delete_property(m_x.get(), m_window, m_property);
    xcb_convert_selection(m_x.get(), m_window, m_selection, target, m_property, XCB_CURRENT_TIME);
    xcb_flush(m_x.get());
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, this, &XSelectionRead::giveUp);
    limit.start(static_cast<int>(m_deadline.remainingTime()));
    co_await qCoro(this, &XSelectionRead::settled);
    std::optional<SelectionValue> given = std::exchange(m_value, std::nullopt);
    co_return given;
}

void XSelectionRead::giveUp()
{
    m_isGivenUp = true;
    m_value.reset();
    settle();
}

void XSelectionRead::settle()
{
    m_target = XCB_ATOM_NONE;
    emit settled();
}

void XSelectionRead::handleEvent(const xcb_generic_event_t &event)
{
    if (m_target == XCB_ATOM_NONE)
        return;
    const quint8 type = event.response_type & 0x7fU;
    if (type == XCB_SELECTION_NOTIFY) {
        const auto &answer = reinterpret_cast<const xcb_selection_notify_event_t &>(event);
        if (answer.requestor == m_window && answer.selection == m_selection && answer.target == m_target)
            handleNotify(answer);
    } else if (type == XCB_PROPERTY_NOTIFY && m_isInPieces) {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (change.window == m_window && change.atom == m_property && change.state == XCB_PROPERTY_NEW_VALUE)
            handleIncrement();
    }
}

void XSelectionRead::handleNotify(const xcb_selection_notify_event_t &answer)
{
    m_value = answer.property == XCB_ATOM_NONE ? std::nullopt : takeProperty();
    if (m_bytesLeft < 0)
        return giveUp();
    if (!m_value || m_value->type != m_x.atom("INCR"))
        return settle();
    // The property is gone now, which asks the owner for the first piece.
    m_isInPieces = true;
    m_value->bytes.clear();
}

void XSelectionRead::handleIncrement()
{
    const auto piece = takeProperty();
    if (m_bytesLeft < 0)
        return giveUp();
    if (!piece || piece->bytes.isEmpty())
        return settle();
    m_value->type = piece->type;
    m_value->unitBits = piece->unitBits;
    m_value->bytes += piece->bytes;
}

std::optional<SelectionValue> XSelectionRead::takeProperty()
{
    const auto units = static_cast<quint32>(m_bytesLeft / 4 + 1);
    const auto reply = m_x.reply(xcb_get_property_reply,
        xcb_get_property(m_x.get(), 1, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, units));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return std::nullopt;
    m_bytesLeft -= static_cast<qsizetype>(xcb_get_property_value_length(reply.get())) + reply->bytes_after;
    return SelectionValue{.type = reply->type,
        .unitBits = reply->format,
        .bytes = QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get()))};
}

} // namespace nimbrelle
