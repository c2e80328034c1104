#pragma once

#include "platform/Clipboard.h"
#include "platform/linux/x11/XSelectionOwner.h"

#include <optional>

namespace nimbrelle {

/// Counts the claims of one selection as the server tells of them.
class XSelectionChanges final : public QObject {
    Q_OBJECT

public:
    XSelectionChanges(XConnection &x, xcb_atom_t selection);

    quint64 count() const { return m_count; }
    xcb_window_t owner() const { return m_owner; }
    WriteTimes times() const { return m_times; }

signals:
    void changed();

private:
    quint64 m_count = 0;
    xcb_window_t m_owner = XCB_WINDOW_NONE;
    WriteTimes m_times;
};

/// The CLIPBOARD selection. X11 has one item only; after a restore this process owns it.
class XClipboard final : public Clipboard {
    Q_OBJECT

public:
    explicit XClipboard(XConnection &x);

    QCoro::Task<std::optional<ClipboardSnapshot>> snapshot() override;
    quint64 changeCount() const override { return m_changes ? m_changes->count() : 0; }
    bool isWrittenBy(const Application &application) const override;
    bool isOwn() const override;
    WriteTimes writeTimes() const override { return m_changes ? m_changes->times() : WriteTimes(); }
    QCoro::Task<std::optional<QString>> string() override;
    void restore(const ClipboardSnapshot &snapshot) override;

private:
    struct Form {
        xcb_atom_t type;
        quint8 unitBits;
    };

    ClipboardItem itemOf(const SelectionValues &values);

    XConnection &m_x;
    std::optional<XSelectionChanges> m_changes;
    std::optional<XSelectionOwner> m_owner;
    QMap<QString, Form> m_forms; ///< how the formats of the last snapshot were typed
};

/// The PRIMARY selection: what was marked last, in any program.
class XPrimarySelection final : public QObject, public PrimarySelection {
    Q_OBJECT

public:
    explicit XPrimarySelection(XConnection &x);

    /// Whether the server tells of it at all.
    bool isHeard() const { return m_changes && m_x.isOpen() && m_x.has(&xcb_xfixes_id); }

    /// Whether what is marked now is text in a window of ours.
    bool isOwn() const;

    quint64 changeCount() const override { return m_changes ? m_changes->count() : 0; }
    QCoro::Task<std::optional<QString>> text() override;

signals:
    /// A program has marked text. Many claim it again with each move of a drag.
    void claimed();
    void gone(); ///< nothing is marked any more

private:
    XConnection &m_x;
    std::optional<XSelectionChanges> m_changes;
};

} // namespace nimbrelle
