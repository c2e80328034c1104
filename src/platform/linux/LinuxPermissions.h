#pragma once

#include "platform/Permissions.h"

namespace nimbrelle {

class AtSpiReader;
class InputMonitor;
class ScreenCapture;
class XConnection;

/// X11 grants everything to everybody; what can be missing is the X11 session itself, or the accessibility
/// bus.
class LinuxPermissions final : public Permissions {
public:
    LinuxPermissions(
        const XConnection &x, const InputMonitor &input, const ScreenCapture &capture, AtSpiReader &reader)
        : m_x(x), m_input(input), m_capture(capture), m_reader(reader)
    {
    }

    GrantState state(Grant grant) const override;
    void request(Grant grant) override;

private:
    GrantState missing() const;
    GrantState withoutAccessibilityBus() const;

    const XConnection &m_x;
    const InputMonitor &m_input;
    const ScreenCapture &m_capture;
    AtSpiReader &m_reader;
};

} // namespace nimbrelle
