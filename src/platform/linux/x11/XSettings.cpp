#include "platform/linux/x11/XSettings.h"

#include "platform/linux/bus/PortalAppearance.h"

#include <QDataStream>
#include <QIODevice>

namespace nimbrelle {
namespace {

enum class Kind : quint8 { number, text, colour };

/// Bytes that are padded to a multiple of four.
QByteArray paddedBytes(QDataStream &stream, qint64 length)
{
    QByteArray bytes;
    if (length < 0 || length > stream.device()->bytesAvailable()) {
        stream.setStatus(QDataStream::ReadPastEnd);
        return bytes;
    }
    bytes.resize(length);
    stream.readRawData(bytes.data(), static_cast<int>(length));
    stream.skipRawData(static_cast<int>((4 - length % 4) % 4));
    return bytes;
}

QVariant valueOf(QDataStream &stream, Kind kind)
{
    switch (kind) {
    case Kind::number: {
        qint32 number = 0;
        stream >> number;
        return number;
    }
    case Kind::text: {
        quint32 length = 0;
        stream >> length;
        return QString::fromUtf8(paddedBytes(stream, length));
    }
    case Kind::colour:
        stream.skipRawData(8);
        return {};
    }
    stream.setStatus(QDataStream::ReadCorruptData);
    return {};
}

} // namespace

QHash<QByteArray, QVariant> xSettingsOf(const QByteArray &property)
{
    QHash<QByteArray, QVariant> settings;
    QDataStream stream(property);
    quint8 order = 0;
    quint32 serial = 0;
    quint32 count = 0;
    stream >> order;
    stream.setByteOrder(order == 0 ? QDataStream::LittleEndian : QDataStream::BigEndian);
    stream.skipRawData(3);
    stream >> serial >> count;
    for (; count > 0 && stream.status() == QDataStream::Ok; --count) {
        quint8 kind = 0;
        quint8 unused = 0;
        quint16 length = 0;
        stream >> kind >> unused >> length;
        const QByteArray name = paddedBytes(stream, length);
        stream >> serial;
        const QVariant value = valueOf(stream, static_cast<Kind>(kind));
        if (stream.status() == QDataStream::Ok && value.isValid())
            settings.insert(name, value);
    }
    return settings;
}

XSettings::XSettings(XConnection &x) : m_x(x)
{
    if (!x.isOpen())
        return;
    x.selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY); // where a manager announces itself
    x.subscribe(this, [this](const xcb_generic_event_t &event) { handleEvent(event); });
    findManager();
}

Appearance XSettings::refined(Appearance guess) const
{
    const QVariant theme = m_settings.value("Net/ThemeName");
    if (theme.isValid() && isDarkThemeName(theme.toString()))
        guess.isDark = true;
    const QVariant animations = m_settings.value("Gtk/EnableAnimations");
    if (animations.isValid())
        guess.isStill = animations.toInt() == 0;
    return guess;
}

void XSettings::findManager()
{
    const auto owner = m_x.reply(
        xcb_get_selection_owner_reply, xcb_get_selection_owner(m_x.get(), m_x.atom("_XSETTINGS_S0")));
    m_manager = owner ? owner->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    if (m_manager == XCB_WINDOW_NONE)
        return;
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_x.get(), m_manager, XCB_CW_EVENT_MASK, &mask);
    read();
}

void XSettings::read()
{
    m_settings = xSettingsOf(m_x.property(m_manager, m_x.atom("_XSETTINGS_SETTINGS")));
    emit changed();
}

void XSettings::handleEvent(const xcb_generic_event_t &event)
{
    const quint8 type = event.response_type & 0x7FU;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto &notice = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notice.window == m_manager && notice.atom == m_x.atom("_XSETTINGS_SETTINGS"))
            read();
    } else if (type == XCB_CLIENT_MESSAGE) {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type == m_x.atom("MANAGER") && message.data.data32[1] == m_x.atom("_XSETTINGS_S0"))
            findManager();
    }
}

} // namespace nimbrelle
