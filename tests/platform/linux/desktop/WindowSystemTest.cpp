#include "platform/linux/desktop/Stage.h"

using namespace nimbrelle;

namespace {

TEST_F(Desktop, AnOwnerThatBlendsNothingIsNoCompositor)
{
    const XWindowSystem &system = platform.desktop.windowSystem;
    EXPECT_FALSE(system.isComposited());
    XConnection &other = otherClient.x;
    const xcb_window_t window = xcb_generate_id(other.get());
    xcb_create_window(other.get(), XCB_COPY_FROM_PARENT, window, other.root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(other.get(), window, other.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    otherClient.sync();
    EXPECT_FALSE(system.isComposited());
    other.reply(xcb_composite_query_version_reply, xcb_composite_query_version(other.get(), 0, 4));
    xcb_composite_redirect_subwindows(other.get(), other.root(), XCB_COMPOSITE_REDIRECT_MANUAL);
    otherClient.sync();
    EXPECT_TRUE(system.isComposited());
}

} // namespace
