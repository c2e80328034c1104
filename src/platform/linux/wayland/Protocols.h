#pragma once

#include <memory>
#include <wayland-client.h>

// One of the protocols has a parameter of this name.
#define namespace scope
#include <wlr-layer-shell-unstable-v1.h>
#undef namespace

#include <ext-idle-notify-v1.h>
#include <viewporter.h>
#include <wlr-data-control-unstable-v1.h>
#include <wlr-screencopy-unstable-v1.h>
#include <xdg-output-unstable-v1.h>

namespace nimbrelle {

/// Each object of a protocol has a request of its own that ends it.
struct EndObject {
    void operator()(wl_buffer *object) const { wl_buffer_destroy(object); }
    void operator()(wl_output *object) const { wl_output_destroy(object); }
    void operator()(wl_pointer *object) const { wl_pointer_release(object); }
    void operator()(wl_surface *object) const { wl_surface_destroy(object); }
    void operator()(wp_viewport *object) const { wp_viewport_destroy(object); }
    void operator()(zwlr_data_control_device_v1 *object) const
    {
        zwlr_data_control_device_v1_destroy(object);
    }
    void operator()(zwlr_data_control_manager_v1 *object) const
    {
        zwlr_data_control_manager_v1_destroy(object);
    }
    void operator()(zwlr_data_control_offer_v1 *object) const { zwlr_data_control_offer_v1_destroy(object); }
    void operator()(zwlr_layer_surface_v1 *object) const { zwlr_layer_surface_v1_destroy(object); }
    void operator()(zwlr_screencopy_frame_v1 *object) const { zwlr_screencopy_frame_v1_destroy(object); }
    void operator()(zwlr_screencopy_manager_v1 *object) const { zwlr_screencopy_manager_v1_destroy(object); }
    void operator()(zxdg_output_v1 *object) const { zxdg_output_v1_destroy(object); }
};

/// To be gone before the connection is.
template <typename Object> using Owned = std::unique_ptr<Object, EndObject>;

} // namespace nimbrelle
