#include "platform/linux/x11/XSelectionOwner.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <poll.h>

namespace nimbrelle {
namespace {

constexpr std::chrono::milliseconds handOverLimit{300};

SelectionValue atomList(const QList<xcb_atom_t> &atoms)
{
    return {XCB_ATOM_ATOM, 32,
        QByteArray(reinterpret_cast<const char *>(atoms.constData()),
            atoms.size() * static_cast<qsizetype>(sizeof(xcb_atom_t)))};
}

} // namespace

XSelectionOwner::XSelectionOwner(XConnection &x, xcb_atom_t selection) : m_x(x), m_selection(selection)
{
    m_window = xcb_generate_id(m_x.get());
    xcb_create_window(m_x.get(), 0, m_window, m_x.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, 0, nullptr);
    m_x.subscribe(this, [this](const xcb_generic_event_t &event) { handleEvent(event); });
}

XSelectionOwner::~XSelectionOwner()
{
    if (!m_x.isOpen())
        return;
    if (m_isOwner)
        handOver();
    xcb_destroy_window(m_x.get(), m_window);
    xcb_flush(m_x.get());
}

void XSelectionOwner::own(SelectionValues values)
{
    m_values = std::move(values);
    m_isOwner = !m_values.isEmpty();
    m_ownedSince = XCB_CURRENT_TIME; // known once the server tells of the change
    // The present time, not that of an event: the selection is ours to take back whatever came in between.
    xcb_set_selection_owner(m_x.get(), m_isOwner ? m_window : static_cast<xcb_window_t>(XCB_WINDOW_NONE),
        m_selection, XCB_CURRENT_TIME);
    xcb_flush(m_x.get());
}

void XSelectionOwner::handleEvent(const xcb_generic_event_t &event)
{
    const quint8 type = event.response_type & 0x7fU;
    if (type == XCB_SELECTION_REQUEST) {
        const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
        if (request.owner == m_window && request.selection == m_selection)
            serve(request);
    } else if (type == XCB_SELECTION_CLEAR) {
        const auto &loss = reinterpret_cast<const xcb_selection_clear_event_t &>(event);
        if (loss.owner == m_window && loss.selection == m_selection) {
            m_isOwner = false;
            m_values.clear();
        }
    } else if (type == XCB_SELECTION_NOTIFY) {
        const auto &answer = reinterpret_cast<const xcb_selection_notify_event_t &>(event);
        m_isHandedOver |= answer.requestor == m_window;
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (change.state == XCB_PROPERTY_DELETE)
            sendNextPiece(change.window, change.atom);
    } else if (type == XCB_DESTROY_NOTIFY) {
        const auto &gone = reinterpret_cast<const xcb_destroy_notify_event_t &>(event);
        std::erase_if(m_transfers, [&](const Transfer &each) { return each.requestor == gone.window; });
    } else if (const quint8 fixes = m_x.firstEvent(&xcb_xfixes_id); fixes != 0 && type == fixes) {
        const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if (change.owner == m_window && change.selection == m_selection)
            m_ownedSince = change.selection_timestamp;
    }
}

void XSelectionOwner::serve(const xcb_selection_request_event_t &request)
{
    // Old clients name no property and mean the format's own name.
    const xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    const bool isGiven = m_isOwner && give(request.requestor, request.target, property);
    answer.property = isGiven ? property : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    xcb_send_event(m_x.get(), 0, request.requestor, 0, reinterpret_cast<const char *>(&answer));
    xcb_flush(m_x.get());
}

bool XSelectionOwner::give(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    if (target == m_x.atom("TARGETS")) {
        giveValue(requestor, property, atomList(targets()));
        return true;
    }
    if (target == m_x.atom("TIMESTAMP")) {
        const QByteArray time(reinterpret_cast<const char *>(&m_ownedSince), sizeof m_ownedSince);
        giveValue(requestor, property, {XCB_ATOM_INTEGER, 32, time});
        return true;
    }
    if (target == m_x.atom("MULTIPLE"))
        return giveSeveral(requestor, property);
    const auto value = m_values.constFind(target);
    if (value == m_values.constEnd())
        return false;
    giveValue(requestor, property, *value);
    return true;
}

void XSelectionOwner::giveValue(xcb_window_t requestor, xcb_atom_t property, const SelectionValue &value)
{
    if (value.bytes.size() <= pieceSize()) {
        const auto units = static_cast<quint32>(value.bytes.size() / (value.unitBits / 8));
        xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, requestor, property, value.type, value.unitBits,
            units, value.bytes.constData());
        return;
    }
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_x.get(), requestor, XCB_CW_EVENT_MASK, &mask);
    std::erase_if(m_transfers,
        [&](const Transfer &each) { return each.requestor == requestor && each.property == property; });
    m_transfers.push_back({requestor, property, value});
    const auto size = static_cast<quint32>(value.bytes.size());
    xcb_change_property(
        m_x.get(), XCB_PROP_MODE_REPLACE, requestor, property, m_x.atom("INCR"), 32, 1, &size);
}

bool XSelectionOwner::giveSeveral(xcb_window_t requestor, xcb_atom_t property)
{
    std::vector<quint32> pairs = m_x.values(requestor, property);
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
        if (pairs[i] == m_x.atom("MULTIPLE") || !give(requestor, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, requestor, property, m_x.atom("ATOM_PAIR"), 32,
        static_cast<quint32>(pairs.size()), pairs.data());
    return !pairs.empty();
}

void XSelectionOwner::sendNextPiece(xcb_window_t requestor, xcb_atom_t property)
{
    const auto found = std::ranges::find_if(m_transfers,
        [&](const Transfer &each) { return each.requestor == requestor && each.property == property; });
    if (found == m_transfers.end())
        return;
    const SelectionValue &value = found->value;
    const qsizetype size = std::min(pieceSize(), value.bytes.size() - found->sent);
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, requestor, property, value.type, value.unitBits,
        static_cast<quint32>(size / (value.unitBits / 8)), value.bytes.constData() + found->sent);
    found->sent += size;
    if (size == 0) // the empty piece was the end
        m_transfers.erase(found);
    xcb_flush(m_x.get());
}

/// This process ends, and with it what it owns: the session's clipboard manager may keep it.
void XSelectionOwner::handOver()
{
    const xcb_atom_t manager = m_x.atom("CLIPBOARD_MANAGER");
    const auto owner = m_x.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(m_x.get(), manager));
    if (!owner || owner->owner == XCB_WINDOW_NONE)
        return;
    m_isHandedOver = false;
    xcb_convert_selection(m_x.get(), m_window, manager, m_x.atom("SAVE_TARGETS"),
        m_x.atom("NIMBRELLE_SELECTION"), XCB_CURRENT_TIME);
    xcb_flush(m_x.get());
    const QDeadlineTimer deadline(handOverLimit);
    while (!m_isHandedOver && !deadline.hasExpired() && m_x.isOpen()) {
        pollfd socket{xcb_get_file_descriptor(m_x.get()), POLLIN, 0};
        poll(&socket, 1, static_cast<int>(deadline.remainingTime()));
        m_x.dispatch();
    }
}

QList<xcb_atom_t> XSelectionOwner::targets() const
{
    return QList<xcb_atom_t>{m_x.atom("TARGETS"), m_x.atom("TIMESTAMP"), m_x.atom("MULTIPLE")}
    + m_values.keys();
}

qsizetype XSelectionOwner::pieceSize() const
{
    constexpr qsizetype enough = 256 * 1024;
    return std::min(enough, qsizetype{4} * xcb_get_maximum_request_length(m_x.get()) - 256) / 4 * 4;
}

} // namespace nimbrelle
