#include "platform/linux/wayland/WaylandInput.h"

#include "platform/linux/wayland/SessionFront.h"
#include "platform/linux/x11/XScreens.h"

#include <QPointer>

namespace nimbrelle {

WaylandInput::WaylandInput(const Parts &parts) : m_parts(parts), m_detector(parts.clock, parts.probe)
{
    connect(&m_detector, &MarkDetector::began, this, &InputMonitor::attentionMoved);
    connect(&m_detector, &MarkDetector::marked, this, &WaylandInput::tellMarked);
    connect(&m_parts.windows, &SessionWindows::activeChanged, this, &WaylandInput::focusMoved);
}

void WaylandInput::stop()
{
    m_isStarted = false;
    m_detector.cancel();
}

void WaylandInput::selectionClaimed()
{
    if (m_isStarted && !m_parts.isOwnSelection())
        m_detector.claimed();
}

void WaylandInput::selectionGone()
{
    if (m_isStarted)
        emit attentionMoved();
}

void WaylandInput::focusMoved()
{
    if (m_isStarted)
        emit attentionMoved();
}

// Which program is in front is asked for now, since whoever hears of the mark asks for it at once.
QCoro::Task<> WaylandInput::tellMarked(QPoint pixel)
{
    const QPointer<WaylandInput> self(this);
    m_parts.pointer.moveTo(pixel);
    co_await m_parts.windows.refresh();
    if (self && m_isStarted)
        emit textMarked(m_parts.screens.layout().pointOf(pixel));
}

} // namespace nimbrelle
