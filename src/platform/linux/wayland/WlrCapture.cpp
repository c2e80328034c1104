#include "platform/linux/wayland/WlrCapture.h"

#include "platform/linux/wayland/WaylandConnection.h"
#include "platform/linux/wayland/WaylandSurface.h"
#include "platform/linux/x11/XScreens.h"

#include <QCoro/QCoroSignal>

#include <algorithm>
#include <cstring>
#include <optional>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr std::chrono::milliseconds patience{1000};

enum class ColourOrder { blueFirst, redFirst };

std::optional<ColourOrder> orderOf(quint32 format)
{
    if (format == WL_SHM_FORMAT_XRGB8888 || format == WL_SHM_FORMAT_ARGB8888)
        return ColourOrder::blueFirst;
    if (format == WL_SHM_FORMAT_XBGR8888 || format == WL_SHM_FORMAT_ABGR8888)
        return ColourOrder::redFirst;
    return std::nullopt;
}

/// One picture on its way.
class Shot final : public QObject {
    Q_OBJECT

public:
    Shot(WaylandConnection &connection, zwlr_screencopy_frame_v1 *frame);

    bool isDone() const { return m_isDone; }
    /// Rows from the top; empty when it failed.
    QByteArray pixels() const;
    QSize size() const { return m_size; }

signals:
    void finished();

private:
    void prepare(quint32 format, QSize size, int stride);
    void finish(bool isReady);

    WaylandConnection &m_connection;
    Owned<zwlr_screencopy_frame_v1> m_frame;
    std::unique_ptr<SharedPixels> m_memory;
    Owned<wl_buffer> m_buffer;
    QSize m_size;
    int m_stride = 0;
    ColourOrder m_order = ColourOrder::blueFirst;
    bool m_isUpsideDown = false;
    bool m_isReady = false;
    bool m_isDone = false;
};

Shot::Shot(WaylandConnection &connection, zwlr_screencopy_frame_v1 *frame)
    : m_connection(connection), m_frame(frame)
{
    static const zwlr_screencopy_frame_v1_listener listener{
        .buffer =
            [](void *self, zwlr_screencopy_frame_v1 *, quint32 format, quint32 width, quint32 height,
                quint32 stride) {
                static_cast<Shot *>(self)->prepare(format,
                    QSize(static_cast<int>(width), static_cast<int>(height)), static_cast<int>(stride));
            },
        .flags =
            [](void *self, zwlr_screencopy_frame_v1 *, quint32 flags) {
                static_cast<Shot *>(self)->m_isUpsideDown = flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT;
            },
        .ready = [](void *self, zwlr_screencopy_frame_v1 *, quint32, quint32,
                     quint32) { static_cast<Shot *>(self)->finish(true); },
        .failed = [](void *self, zwlr_screencopy_frame_v1 *) { static_cast<Shot *>(self)->finish(false); },
        .damage = [](void *, zwlr_screencopy_frame_v1 *, quint32, quint32, quint32, quint32) {},
        .linux_dmabuf = [](void *, zwlr_screencopy_frame_v1 *, quint32, quint32, quint32) {},
        .buffer_done = [](void *, zwlr_screencopy_frame_v1 *) {},
    };
    zwlr_screencopy_frame_v1_add_listener(frame, &listener, this);
    connect(&connection, &WaylandConnection::closed, this, [this] { finish(false); });
    connection.flush();
}

void Shot::prepare(quint32 format, QSize size, int stride)
{
    const auto order = orderOf(format);
    if (m_memory || !order || size.isEmpty() || stride < size.width() * 4) {
        finish(false);
        return;
    }
    m_order = *order;
    m_size = size;
    m_stride = stride;
    m_memory = std::make_unique<SharedPixels>(
        static_cast<std::size_t>(stride) * static_cast<std::size_t>(size.height()));
    m_buffer = m_memory->buffer(m_connection.memory(), size, stride, format);
    if (!m_buffer) {
        finish(false);
        return;
    }
    zwlr_screencopy_frame_v1_copy(m_frame.get(), m_buffer.get());
    m_connection.flush();
}

void Shot::finish(bool isReady)
{
    if (std::exchange(m_isDone, true))
        return;
    m_isReady = isReady;
    emit finished();
}

QByteArray Shot::pixels() const
{
    if (!m_isReady)
        return {};
    const qsizetype row = qsizetype{4} * m_size.width();
    QByteArray pixels(row * m_size.height(), Qt::Uninitialized);
    for (int y = 0; y < m_size.height(); ++y) {
        const int from = m_isUpsideDown ? m_size.height() - 1 - y : y;
        std::memcpy(pixels.data() + y * row, m_memory->bytes().data() + qsizetype{from} * m_stride,
            static_cast<std::size_t>(row));
    }
    if (m_order == ColourOrder::redFirst)
        for (qsizetype i = 0; i + 2 < pixels.size(); i += 4)
            std::swap(pixels[i], pixels[i + 2]);
    return pixels;
}

} // namespace

WlrCapture::WlrCapture(
    WaylandConnection &connection, const XScreens &screens, std::function<QPointF(QPoint)> toLogical)
    : m_connection(connection), m_screens(screens), m_toLogical(std::move(toLogical))
{
    if (connection.isOpen())
        m_manager.reset(connection.bind<zwlr_screencopy_manager_v1>(zwlr_screencopy_manager_v1_interface, 1));
}

bool WlrCapture::isAllowed() const
{
    return m_manager && m_connection.isOpen();
}

QCoro::Task<Picture> WlrCapture::capture(Screen screen, QRectF area)
{
    if (!isAllowed())
        throw CaptureFailure(u"当前桌面会话不允许截取屏幕"_s);
    const QRect pixels = m_screens.layout().pixelsOf(screen.id, area);
    if (pixels.isEmpty())
        co_return Picture();
    const QRectF logical(m_toLogical(pixels.topLeft()), m_toLogical(pixels.bottomRight() + QPoint(1, 1)));
    const QList<WaylandOutput> outputs = m_connection.outputs();
    const auto output = std::ranges::find_if(
        outputs, [&](const WaylandOutput &each) { return QRectF(each.area).contains(logical.center()); });
    if (output == outputs.end())
        co_return Picture();
    const QRect wanted = logical.toRect().intersected(output->area).translated(-output->area.topLeft());
    constexpr int withoutPointer = 0;
    Shot shot(m_connection,
        zwlr_screencopy_manager_v1_capture_output_region(m_manager.get(), withoutPointer, output->output,
            wanted.x(), wanted.y(), wanted.width(), wanted.height()));
    if (!shot.isDone())
        co_await qCoro(&shot, &Shot::finished, patience);
    Picture picture{.width = shot.size().width(), .height = shot.size().height(), .pixels = shot.pixels()};
    picture.scale = picture.width / area.width();
    if (!picture.isValid())
        throw CaptureFailure(u"屏幕没有给出图像"_s);
    co_return picture;
}

} // namespace nimbrelle

#include "WlrCapture.moc"
