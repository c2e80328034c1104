#include "XScene.h"

namespace nimbrelle {

void XScene::awaitDesktop()
{
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return !user.x.values(user.x.root(), user.x.atom("_NET_SUPPORTING_WM_CHECK")).empty();
    })) << "no window manager";
}

QImage XScene::screenImage() const
{
    const auto size = user.x.reply(xcb_get_geometry_reply, xcb_get_geometry(user.x.get(), user.x.root()));
    const auto answer = user.x.reply(xcb_get_image_reply,
        xcb_get_image(
            user.x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, user.x.root(), 0, 0, size->width, size->height, ~0U));
    if (!answer)
        return {};
    return QImage(
        xcb_get_image_data(answer.get()), size->width, size->height, size->width * 4, QImage::Format_RGB32)
        .copy();
}

} // namespace nimbrelle
