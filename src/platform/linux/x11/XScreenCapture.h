#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/x11/XConnection.h"

#include <QRect>

#include <optional>
#include <vector>

namespace nimbrelle {

class XScreens;

/// Reads the screen's pixels through shared memory where the server shares it. While one of our windows cuts
/// the wanted piece, the picture is put together from the other windows' own pixels instead, so that the text
/// under our card is whole. With a compositor it always is, for the screen shows one of our windows for a
/// while after it has gone. Where windows have no pixels of their own, ours are blank in the picture.
class XScreenCapture final : public ScreenCapture {
public:
    XScreenCapture(XConnection &x, const XScreens &screens);
    ~XScreenCapture() override;

    bool isAllowed() const override;
    QCoro::Task<Picture> capture(Screen screen, QRectF area) override;

private:
    struct Window {
        xcb_window_t id;
        QRect frame; ///< with its border
        int depth;
        bool isOurs;
    };
    /// Memory that the server writes pictures into.
    struct Shared {
        xcb_shm_seg_t id;
        quint32 size;
        const char *bytes;
    };

    QByteArray pixelsOf(xcb_drawable_t drawable, const QRect &area);
    QByteArray sharedPixelsOf(xcb_drawable_t drawable, const QRect &area);
    bool share(quint32 size);
    void unshare();
    std::vector<Window> windowsOver(const QRect &area) const;
    QByteArray pixelsWithoutOurs(const QRect &area);
    bool hasCompositor() const;
    bool compose(const std::vector<Window> &windows, const QRect &area, QByteArray &picture);
    QByteArray background(const QRect &area);
    bool paint(const Window &window, const QRect &area, QByteArray &picture);
    std::vector<QRect> shapeOf(const Window &window) const;

    XConnection &m_x;
    const XScreens &m_screens;
    std::optional<Shared> m_shared;
    bool m_canShare = false;
    bool m_canCompose = false;
};

/// Lays `piece` over `picture` at `at`: rows of 4-byte pixels, `width` of them in a row of the picture. With
/// `hasAlpha` the colours are already multiplied by the fourth byte, else that byte means nothing.
void layOver(QByteArray &picture, int width, const QByteArray &piece, const QRect &at, bool hasAlpha);

/// Makes the rows of `at` white.
void blank(QByteArray &picture, int width, const QRect &at);

} // namespace nimbrelle
