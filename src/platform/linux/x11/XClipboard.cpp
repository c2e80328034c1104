#include "platform/linux/x11/XClipboard.h"

#include "platform/FrontApplication.h"

#include <array>
#include <cstring>

namespace nimbrelle {
namespace {

constexpr std::chrono::milliseconds timeLimit{300};
constexpr ReadLimit snapshotLimit{.time = timeLimit, .bytes = 64 << 20};
constexpr ReadLimit textLimit{.time = timeLimit, .bytes = 1 << 20}; ///< far more than anybody looks up
constexpr qsizetype mostFormats = 64;

/// Formats that carry no content, do something when asked for, or are made anew from the others.
constexpr std::array notContent{"TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS", "DELETE",
    "INSERT_SELECTION", "INSERT_PROPERTY", "application/x-qt-image"};

bool isContent(const QByteArray &format)
{
    return !format.isEmpty()
        && std::ranges::none_of(notContent, [&](const char *name) { return format == name; });
}

QList<xcb_atom_t> atomsOf(const SelectionValue &value)
{
    QList<xcb_atom_t> atoms(value.bytes.size() / static_cast<qsizetype>(sizeof(xcb_atom_t)));
    std::memcpy(
        atoms.data(), value.bytes.constData(), static_cast<std::size_t>(atoms.size()) * sizeof(xcb_atom_t));
    return atoms;
}

struct TextFormat {
    const char *name;
    bool isLatin1;
};
constexpr std::array textFormats{TextFormat{.name = "UTF8_STRING", .isLatin1 = false},
    TextFormat{.name = "text/plain;charset=utf-8", .isLatin1 = false},
    TextFormat{.name = "STRING", .isLatin1 = true}};

QString decoded(QByteArray bytes, bool isLatin1)
{
    // Some programs count the closing zero in.
    while (bytes.endsWith('\0'))
        bytes.chop(1);
    return isLatin1 ? QString::fromLatin1(bytes) : QString::fromUtf8(bytes);
}

QCoro::Task<std::optional<QString>> readText(XConnection &x, xcb_atom_t selection)
{
    XSelectionRead read(x, selection, textLimit);
    if (read.owner() == XCB_WINDOW_NONE)
        co_return std::nullopt;
    for (const TextFormat &format : textFormats) {
        const std::optional<SelectionValue> value = co_await read.convert(x.atom(format.name));
        if (value && value->unitBits == 8)
            co_return decoded(value->bytes, format.isLatin1);
        if (read.isGivenUp())
            break;
    }
    co_return std::nullopt;
}

} // namespace

XSelectionChanges::XSelectionChanges(XConnection &x, xcb_atom_t selection)
{
    if (!x.has(&xcb_xfixes_id))
        return;
    x.reply(xcb_xfixes_query_version_reply, xcb_xfixes_query_version(x.get(), 5, 0));
    xcb_xfixes_select_selection_input(x.get(), x.root(), selection,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(x.get());
    const quint8 wanted = x.firstEvent(&xcb_xfixes_id);
    x.subscribe(this, [this, wanted, selection](const xcb_generic_event_t &event) {
        const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if ((event.response_type & 0x7fU) != wanted || change.selection != selection)
            return;
        ++m_count;
        m_owner = change.owner;
        m_times = {.causedAt = change.selection_timestamp, .doneAt = change.timestamp};
        emit changed();
    });
}

XClipboard::XClipboard(XConnection &x) : m_x(x)
{
    if (!m_x.isOpen())
        return;
    m_changes.emplace(m_x, m_x.atom("CLIPBOARD"));
    connect(&*m_changes, &XSelectionChanges::changed, this, &Clipboard::changed);
    m_owner.emplace(m_x, m_x.atom("CLIPBOARD"));
}

QCoro::Task<std::optional<ClipboardSnapshot>> XClipboard::snapshot()
{
    if (!m_x.isOpen())
        co_return std::nullopt;
    SelectionValues values;
    XSelectionRead read(m_x, m_x.atom("CLIPBOARD"), snapshotLimit);
    const xcb_window_t owner = read.owner();
    if (owner == XCB_WINDOW_NONE)
        co_return ClipboardSnapshot();
    if (owner == m_owner->window()) {
        values = m_owner->values();
    } else {
        const std::optional<SelectionValue> targets = co_await read.convert(m_x.atom("TARGETS"));
        if (!targets)
            co_return std::nullopt;
        const QList<xcb_atom_t> formats = atomsOf(*targets);
        if (formats.size() > mostFormats)
            co_return std::nullopt;
        m_x.learnNames(formats);
        for (const xcb_atom_t format : formats) {
            if (values.contains(format) || !isContent(m_x.nameOf(format)))
                continue;
            const std::optional<SelectionValue> value = co_await read.convert(format);
            if (value)
                values.insert(format, *value);
        }
        if (read.isGivenUp())
            co_return std::nullopt;
    }
    const ClipboardItem item = itemOf(values);
    ClipboardSnapshot taken;
    if (!item.isEmpty())
        taken.append(item);
    co_return taken;
}

ClipboardItem XClipboard::itemOf(const SelectionValues &values)
{
    ClipboardItem item;
    m_forms.clear();
    for (auto each = values.cbegin(); each != values.cend(); ++each) {
        const QString format = QString::fromUtf8(m_x.nameOf(each.key()));
        item.insert(format, each->bytes);
        m_forms.insert(format, {.type = each->type, .unitBits = each->unitBits});
    }
    return item;
}

bool XClipboard::isWrittenBy(const Application &application) const
{
    return m_changes && m_x.areOfOneClient(m_changes->owner(), static_cast<xcb_window_t>(application.window));
}

bool XClipboard::isOwn() const
{
    // After restoring an empty one, nobody owns it.
    return m_changes && (m_changes->owner() == m_owner->window() || m_changes->owner() == XCB_WINDOW_NONE);
}

QCoro::Task<std::optional<QString>> XClipboard::string()
{
    if (!m_x.isOpen())
        co_return std::nullopt;
    std::optional<QString> text = co_await readText(m_x, m_x.atom("CLIPBOARD"));
    co_return text;
}

void XClipboard::restore(const ClipboardSnapshot &snapshot)
{
    if (!m_x.isOpen())
        return;
    SelectionValues values;
    for (const ClipboardItem &item : snapshot) {
        for (auto each = item.cbegin(); each != item.cend(); ++each) {
            const xcb_atom_t format = m_x.atom(each.key().toUtf8());
            const Form form = m_forms.value(each.key(), {.type = format, .unitBits = 8});
            values.insert(format, {.type = form.type, .unitBits = form.unitBits, .bytes = each.value()});
        }
    }
    m_owner->own(std::move(values));
}

XPrimarySelection::XPrimarySelection(XConnection &x) : m_x(x)
{
    if (!m_x.isOpen())
        return;
    m_changes.emplace(m_x, XCB_ATOM_PRIMARY);
    connect(&*m_changes, &XSelectionChanges::changed, this, [this] {
        if (m_changes->owner() == XCB_WINDOW_NONE)
            emit gone();
        else
            emit claimed();
    });
}

bool XPrimarySelection::isOwn() const
{
    if (!m_x.isOpen())
        return false;
    const auto owner =
        m_x.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(m_x.get(), XCB_ATOM_PRIMARY));
    return owner && m_x.isOwn(owner->owner);
}

QCoro::Task<std::optional<QString>> XPrimarySelection::text()
{
    if (!m_x.isOpen())
        co_return std::nullopt;
    std::optional<QString> text = co_await readText(m_x, XCB_ATOM_PRIMARY);
    co_return text;
}

} // namespace nimbrelle
