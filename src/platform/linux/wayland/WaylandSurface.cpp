#include "platform/linux/wayland/WaylandSurface.h"

#include "platform/linux/wayland/WaylandConnection.h"

#include <sys/mman.h>
#include <unistd.h>

namespace nimbrelle {

SharedPixels::SharedPixels(std::size_t size) : m_file(::memfd_create("nimbrelle-pixels", MFD_CLOEXEC))
{
    if (m_file < 0 || ::ftruncate(m_file, static_cast<off_t>(size)) != 0)
        return;
    void *start = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, m_file, 0);
    if (start != MAP_FAILED)
        m_bytes = {static_cast<char *>(start), size};
}

SharedPixels::~SharedPixels()
{
    if (!m_bytes.empty())
        ::munmap(m_bytes.data(), m_bytes.size());
    if (m_file >= 0)
        ::close(m_file);
}

Owned<wl_buffer> SharedPixels::buffer(wl_shm *memory, QSize size, int stride, quint32 format) const
{
    if (m_bytes.empty())
        return nullptr;
    wl_shm_pool *pool = wl_shm_create_pool(memory, m_file, static_cast<int>(m_bytes.size()));
    Owned<wl_buffer> buffer(wl_shm_pool_create_buffer(pool, 0, size.width(), size.height(), stride, format));
    wl_shm_pool_destroy(pool);
    return buffer;
}

Owned<wl_buffer> transparentBuffer(const WaylandConnection &connection, QSize size)
{
    constexpr int pixel = 4;
    const SharedPixels pixels(
        static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()) * pixel);
    return pixels.buffer(connection.memory(), size, size.width() * pixel, WL_SHM_FORMAT_ARGB8888);
}

} // namespace nimbrelle
