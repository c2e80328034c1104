#include "platform/linux/wayland/WaylandPrimary.h"

#include "platform/linux/wayland/PipeRead.h"
#include "platform/linux/wayland/WaylandConnection.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace nimbrelle {
namespace {

constexpr std::chrono::milliseconds timeLimit{300};
constexpr qsizetype byteLimit = 1 << 20; // far more than anybody looks up
constexpr quint32 versionWithPrimary = 2;

/// The standard form of the protocol differs by its name alone, and the name of an interface is all that goes
/// over the wire.
wl_interface standardManager()
{
    wl_interface standard = zwlr_data_control_manager_v1_interface;
    standard.name = "ext_data_control_manager_v1";
    return standard;
}

const wl_interface standardInterface = standardManager();

constexpr std::array textTypes{"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", "TEXT", "STRING"};

} // namespace

WaylandPrimary::WaylandPrimary(WaylandConnection &connection) : m_connection(connection)
{
    if (!connection.isOpen() || !connection.seat())
        return;
    m_manager.reset(connection.bind<zwlr_data_control_manager_v1>(standardInterface, 1));
    if (!m_manager)
        m_manager.reset(connection.bind<zwlr_data_control_manager_v1>(
            zwlr_data_control_manager_v1_interface, versionWithPrimary));
    if (!m_manager)
        return;
    static const zwlr_data_control_device_v1_listener listener{
        .data_offer =
            [](void *self, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *offer) {
                static_cast<WaylandPrimary *>(self)->addOffer(offer);
            },
        .selection =
            [](void *self, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *offer) {
                std::erase_if(static_cast<WaylandPrimary *>(self)->m_told,
                    [offer](const auto &each) { return each->offer.get() == offer; });
            },
        .finished =
            [](void *self, zwlr_data_control_device_v1 *) {
                static_cast<WaylandPrimary *>(self)->m_device.reset();
            },
        .primary_selection =
            [](void *self, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *offer) {
                static_cast<WaylandPrimary *>(self)->setPrimary(offer);
            },
    };
    m_device.reset(zwlr_data_control_manager_v1_get_data_device(m_manager.get(), connection.seat()));
    zwlr_data_control_device_v1_add_listener(m_device.get(), &listener, this);
    connection.roundTrip(); // what was marked before is told at once, and nobody listens yet
    m_changes = 0;
}

WaylandPrimary::~WaylandPrimary() = default;

void WaylandPrimary::addOffer(zwlr_data_control_offer_v1 *offer)
{
    static const zwlr_data_control_offer_v1_listener listener{
        .offer = [](void *data, zwlr_data_control_offer_v1 *,
                     const char *type) { static_cast<Offer *>(data)->types.insert(type); },
    };
    m_told.push_back(
        std::make_unique<Offer>(Offer{.offer = Owned<zwlr_data_control_offer_v1>(offer), .types = {}}));
    zwlr_data_control_offer_v1_add_listener(offer, &listener, m_told.back().get());
}

void WaylandPrimary::setPrimary(zwlr_data_control_offer_v1 *offer)
{
    m_primary.reset();
    const auto told =
        std::ranges::find_if(m_told, [offer](const auto &each) { return each->offer.get() == offer; });
    if (told == m_told.end()) {
        emit gone();
        return;
    }
    m_primary = std::move(*told);
    m_told.erase(told);
    if (!textType())
        return;
    ++m_changes;
    emit claimed();
}

std::optional<QByteArray> WaylandPrimary::textType() const
{
    if (!m_primary)
        return std::nullopt;
    const auto type =
        std::ranges::find_if(textTypes, [this](const char *each) { return m_primary->types.contains(each); });
    return type == textTypes.end() ? std::nullopt : std::optional<QByteArray>(*type);
}

// Some programs offer a text of no bytes just before the real one, which is then told of as another change.
QCoro::Task<std::optional<QString>> WaylandPrimary::text()
{
    const std::optional<QByteArray> type = textType();
    std::array<int, 2> ends{};
    if (!type || !m_connection.isOpen() || ::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        co_return std::nullopt;
    zwlr_data_control_offer_v1_receive(m_primary->offer.get(), type->constData(), ends[1]);
    m_connection.flush();
    ::close(ends[1]);
    std::optional<QByteArray> bytes = co_await readPipe(ends[0], {.time = timeLimit, .bytes = byteLimit});
    if (!bytes || bytes->isEmpty())
        co_return std::nullopt;
    while (bytes->endsWith('\0')) // which some programs count in
        bytes->chop(1);
    const bool isLatin1 = *type == "STRING";
    co_return isLatin1 ? QString::fromLatin1(*bytes) : QString::fromUtf8(*bytes);
}

} // namespace nimbrelle
