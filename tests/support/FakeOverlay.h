#pragma once

#include "screen/RegionOverlay.h"

#include <utility>

namespace nimbrelle {

class FakeOverlay final : public RegionOverlay {
public:
    void open(const QRectF &frame, std::function<void(std::optional<QRectF>)> finished) override
    {
        ++opened;
        screenFrame = frame;
        m_finished = std::move(finished);
    }
    void close() override { m_finished = {}; }

    bool isOpen() const { return static_cast<bool>(m_finished); }
    /// The user's frame, relative to the screen's bottom left corner; nothing for Esc.
    void finish(std::optional<QRectF> frame)
    {
        const auto finished = m_finished;
        if (finished)
            finished(frame);
    }

    int opened = 0; ///< how often
    QRectF screenFrame;

private:
    std::function<void(std::optional<QRectF>)> m_finished;
};

} // namespace nimbrelle
