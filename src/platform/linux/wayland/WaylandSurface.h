#pragma once

#include "platform/linux/wayland/Protocols.h"

#include <QSize>

#include <span>

namespace nimbrelle {

class WaylandConnection;

/// Memory that the compositor shares: pixels of four bytes, rows from the top.
class SharedPixels {
public:
    /// Nothing but zeros at first. `bytes()` is empty where the system gave no memory.
    explicit SharedPixels(std::size_t size);
    ~SharedPixels();
    SharedPixels(const SharedPixels &) = delete;
    SharedPixels &operator=(const SharedPixels &) = delete;

    std::span<char> bytes() const { return m_bytes; }
    Owned<wl_buffer> buffer(wl_shm *memory, QSize size, int stride, quint32 format) const;

private:
    int m_file = -1;
    std::span<char> m_bytes;
};

/// A buffer of that size that lets everything below it show through.
Owned<wl_buffer> transparentBuffer(const WaylandConnection &connection, QSize size);

} // namespace nimbrelle
