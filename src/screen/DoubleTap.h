#pragma once

#include "frame/Timestamp.h"

namespace nimbrelle {

/// Recognizes a quick double tap of one key: pressed, let go again within 0.25 s, and pressed again within
/// 0.35 s of that.
class DoubleTap {
public:
    /// True when this press completes a double tap. Repeated presses without a release count once.
    bool press(Timestamp now);

    /// `isClean` says that no other modifier was down with it. Without a press before it does nothing.
    void release(Timestamp now, bool isClean);

    /// Other input came between: what was tapped so far does not count.
    void reset();

private:
    std::optional<Timestamp> m_pressedAt; // absent while the key is up
    std::optional<Timestamp> m_lastTap; // when the last complete tap ended
};

} // namespace nimbrelle
