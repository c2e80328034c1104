#include "platform/linux/x11/XScreenCapture.h"

#include "platform/linux/x11/XInput.h"
#include "platform/linux/x11/XScreens.h"

#include <algorithm>
#include <cstring>
#include <sys/ipc.h>
#include <sys/shm.h>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr int bytesPerPixel = 4;
constexpr quint32 wholeImage = ~0U;

quint32 byteCount(const QRect &area)
{
    return static_cast<quint32>(area.width()) * static_cast<quint32>(area.height()) * bytesPerPixel;
}

bool hasPlainPixels(const xcb_screen_t &screen, const xcb_setup_t &setup)
{
    auto formats = xcb_setup_pixmap_formats_iterator(&setup);
    for (; formats.rem > 0; xcb_format_next(&formats))
        if (formats.data->depth == screen.root_depth && formats.data->bits_per_pixel != 32)
            return false;
    return screen.root_depth >= 24 && setup.image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
}

} // namespace

void layOver(QByteArray &picture, int width, const QByteArray &piece, const QRect &at, bool hasAlpha)
{
    const auto rowBytes = static_cast<std::size_t>(at.width()) * bytesPerPixel;
    for (int row = 0; row < at.height(); ++row) {
        const char *from = piece.constData() + static_cast<std::size_t>(row) * rowBytes;
        char *to = picture.data() + (qsizetype{at.top() + row} * width + at.left()) * bytesPerPixel;
        if (!hasAlpha) {
            std::memcpy(to, from, rowBytes);
            continue;
        }
        for (std::size_t i = 0; i < rowBytes; ++i) {
            const auto opacity = static_cast<unsigned char>(from[i | 3U]);
            const auto below = static_cast<unsigned char>(to[i]);
            const int mixed = static_cast<unsigned char>(from[i]) + below * (255 - opacity) / 255;
            to[i] = static_cast<char>(std::min(mixed, 255));
        }
    }
}

void blank(QByteArray &picture, int width, const QRect &at)
{
    for (int y = at.top(); y <= at.bottom(); ++y)
        std::memset(picture.data() + (qsizetype{y} * width + at.left()) * bytesPerPixel, '\xff',
            static_cast<std::size_t>(at.width()) * bytesPerPixel);
}

XScreenCapture::XScreenCapture(XConnection &x, const XScreens &screens) : m_x(x), m_screens(screens)
{
    if (!isAllowed())
        return;
    m_canShare = m_x.has(&xcb_shm_id);
    if (!m_x.has(&xcb_composite_id) || !m_x.has(&xcb_shape_id))
        return;
    m_canCompose =
        m_x.reply(xcb_composite_query_version_reply, xcb_composite_query_version(m_x.get(), 0, 4)) != nullptr;
    // From now on each window keeps its whole picture, also where another one covers it. That can't be had
    // afterwards, so it is asked for before our first card is up.
    if (m_canCompose)
        xcb_composite_redirect_subwindows(m_x.get(), m_x.root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    xcb_flush(m_x.get());
}

XScreenCapture::~XScreenCapture()
{
    unshare();
}

bool XScreenCapture::isAllowed() const
{
    return m_x.isOpen() && !isWaylandSession() && hasPlainPixels(m_x.screen(), *xcb_get_setup(m_x.get()));
}

QCoro::Task<Picture> XScreenCapture::capture(Screen screen, QRectF area)
{
    if (!isAllowed())
        throw CaptureFailure(u"当前桌面会话不允许截取屏幕"_s);
    Picture picture;
    const QRect pixels = m_screens.layout().pixelsOf(screen.id, area);
    if (pixels.isNull())
        co_return picture;
    picture.width = pixels.width();
    picture.height = pixels.height();
    picture.scale = screen.scale;
    picture.pixels = pixelsWithoutOurs(pixels);
    if (!picture.isValid())
        throw CaptureFailure(u"屏幕没有给出图像"_s);
    co_return picture;
}

QByteArray XScreenCapture::pixelsWithoutOurs(const QRect &area)
{
    const std::vector<Window> windows = windowsOver(area);
    const bool isCovered = std::ranges::any_of(windows, &Window::isOurs);
    if (m_canCompose && (isCovered || hasCompositor())) {
        QByteArray pixels = background(area);
        if (compose(windows, area, pixels) || isCovered)
            return pixels;
    }
    QByteArray pixels = pixelsOf(m_x.root(), area);
    for (const Window &window : windows)
        if (window.isOurs && pixels.size() == static_cast<qsizetype>(byteCount(area)))
            blank(pixels, area.width(), (window.frame & area).translated(-area.topLeft()));
    return pixels;
}

bool XScreenCapture::hasCompositor() const
{
    const auto owner = m_x.reply(xcb_get_selection_owner_reply,
        xcb_get_selection_owner(
            m_x.get(), m_x.atom("_NET_WM_CM_S" + QByteArray::number(m_x.screenNumber()))));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

QByteArray XScreenCapture::pixelsOf(xcb_drawable_t drawable, const QRect &area)
{
    if (m_canShare && share(byteCount(area))) {
        const QByteArray shared = sharedPixelsOf(drawable, area);
        if (!shared.isEmpty())
            return shared;
    }
    const auto image = m_x.reply(xcb_get_image_reply,
        xcb_get_image(m_x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<qint16>(area.x()),
            static_cast<qint16>(area.y()), static_cast<quint16>(area.width()),
            static_cast<quint16>(area.height()), wholeImage));
    if (!image)
        return {};
    return {reinterpret_cast<const char *>(xcb_get_image_data(image.get())),
        xcb_get_image_data_length(image.get())};
}

QByteArray XScreenCapture::sharedPixelsOf(xcb_drawable_t drawable, const QRect &area)
{
    const auto image = m_x.reply(xcb_shm_get_image_reply,
        xcb_shm_get_image(m_x.get(), drawable, static_cast<qint16>(area.x()), static_cast<qint16>(area.y()),
            static_cast<quint16>(area.width()), static_cast<quint16>(area.height()), wholeImage,
            XCB_IMAGE_FORMAT_Z_PIXMAP, m_shared->id, 0));
    return image ? QByteArray(m_shared->bytes, static_cast<qsizetype>(byteCount(area))) : QByteArray();
}

bool XScreenCapture::share(quint32 size)
{
    if (m_shared && m_shared->size >= size)
        return true;
    unshare();
    const int memory = shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
    void *bytes = memory == -1 ? nullptr : shmat(memory, nullptr, 0);
    if (!bytes || bytes == reinterpret_cast<void *>(-1)) {
        m_canShare = false;
        if (memory != -1)
            shmctl(memory, IPC_RMID, nullptr);
        return false;
    }
    m_shared = Shared{xcb_generate_id(m_x.get()), size, static_cast<const char *>(bytes)};
    const auto refused = XReply<xcb_generic_error_t>(xcb_request_check(
        m_x.get(), xcb_shm_attach_checked(m_x.get(), m_shared->id, static_cast<quint32>(memory), 0)));
    shmctl(memory, IPC_RMID, nullptr); // gone with the last of us two, whatever happens
    if (!refused)
        return true;
    m_canShare = false; // a server on another machine
    unshare();
    return false;
}

void XScreenCapture::unshare()
{
    if (!m_shared)
        return;
    if (m_x.isOpen())
        xcb_shm_detach(m_x.get(), m_shared->id);
    shmdt(m_shared->bytes);
    m_shared.reset();
}

/// The windows on screen that cut `area`, from the lowest up.
std::vector<XScreenCapture::Window> XScreenCapture::windowsOver(const QRect &area) const
{
    const auto tree = m_x.reply(xcb_query_tree_reply, xcb_query_tree(m_x.get(), m_x.root()));
    if (!tree)
        return {};
    const xcb_window_t *first = xcb_query_tree_children(tree.get());
    const auto count = static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()));
    std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> asked;
    for (std::size_t i = 0; i < count; ++i)
        asked.emplace_back(
            xcb_get_window_attributes(m_x.get(), first[i]), xcb_get_geometry(m_x.get(), first[i]));
    std::vector<Window> windows;
    for (std::size_t i = 0; i < count; ++i) {
        const auto attributes = m_x.reply(xcb_get_window_attributes_reply, asked[i].first);
        const auto geometry = m_x.reply(xcb_get_geometry_reply, asked[i].second);
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE
            || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        const int border = 2 * geometry->border_width;
        const QRect frame(geometry->x, geometry->y, geometry->width + border, geometry->height + border);
        if (frame.intersects(area))
            windows.push_back({first[i], frame, geometry->depth, m_x.isOwnOrItsFrame(first[i])});
    }
    return windows;
}

/// False where a window did not give its pixels.
bool XScreenCapture::compose(const std::vector<Window> &windows, const QRect &area, QByteArray &picture)
{
    bool isWhole = true;
    for (const Window &window : windows)
        if (!window.isOurs)
            isWhole = paint(window, area, picture) && isWhole;
    return isWhole;
}

/// The wallpaper where somebody has told which pixmap it is, else black; it need not line up with the screen.
QByteArray XScreenCapture::background(const QRect &area)
{
    const std::vector<quint32> wallpaper = m_x.values(m_x.root(), m_x.atom("_XROOTPMAP_ID"));
    if (!wallpaper.empty()) {
        const QByteArray pixels = pixelsOf(wallpaper.front(), area);
        if (pixels.size() == static_cast<qsizetype>(byteCount(area)))
            return pixels;
    }
    return {static_cast<qsizetype>(byteCount(area)), '\0'};
}

bool XScreenCapture::paint(const Window &window, const QRect &area, QByteArray &picture)
{
    const xcb_pixmap_t pixmap = xcb_generate_id(m_x.get());
    xcb_composite_name_window_pixmap(m_x.get(), window.id, pixmap);
    bool isWhole = true;
    for (const QRect &piece : shapeOf(window)) {
        const QRect wanted = piece & area;
        if (!wanted.isValid())
            continue;
        const QByteArray pixels = pixelsOf(pixmap, wanted.translated(-window.frame.topLeft()));
        const bool isGiven = pixels.size() == static_cast<qsizetype>(byteCount(wanted));
        isWhole = isWhole && isGiven;
        if (isGiven)
            layOver(picture, area.width(), pixels, wanted.translated(-area.topLeft()), window.depth == 32);
    }
    xcb_free_pixmap(m_x.get(), pixmap);
    return isWhole;
}

/// In pixels of the root window; the whole frame for a window without a shape of its own.
std::vector<QRect> XScreenCapture::shapeOf(const Window &window) const
{
    const auto reply = m_x.reply(xcb_shape_get_rectangles_reply,
        xcb_shape_get_rectangles(m_x.get(), window.id, XCB_SHAPE_SK_BOUNDING));
    const int count = reply ? xcb_shape_get_rectangles_rectangles_length(reply.get()) : 0;
    if (count <= 1)
        return {window.frame};
    const xcb_rectangle_t *first = xcb_shape_get_rectangles_rectangles(reply.get());
    std::vector<QRect> pieces;
    for (int i = 0; i < count; ++i)
        pieces.emplace_back(
            window.frame.x() + first[i].x, window.frame.y() + first[i].y, first[i].width, first[i].height);
    return pieces;
}

} // namespace nimbrelle
