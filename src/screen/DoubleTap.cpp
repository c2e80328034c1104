#include "screen/DoubleTap.h"

#include <utility>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto longestTap = 250ms;
constexpr auto longestGap = 350ms;

} // namespace

bool DoubleTap::press(Timestamp now)
{
    if (m_pressedAt)
        return false;
    if (m_lastTap && now - *m_lastTap < longestGap) {
        m_lastTap.reset();
        return true;
    }
    m_pressedAt = now;
    return false;
}

void DoubleTap::release(Timestamp now, bool isClean)
{
    if (!m_pressedAt)
        return;
    const auto held = now - *std::exchange(m_pressedAt, std::nullopt);
    if (isClean && held < longestTap)
        m_lastTap = now;
    else
        m_lastTap.reset();
}

void DoubleTap::reset()
{
    m_pressedAt.reset();
    m_lastTap.reset();
}

} // namespace nimbrelle
