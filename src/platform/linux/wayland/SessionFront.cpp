#include "platform/linux/wayland/SessionFront.h"

#include "platform/linux/x11/XScreens.h"

#include <QCoro/QCoroSignal>

#include <algorithm>

namespace nimbrelle {
namespace {

constexpr std::chrono::milliseconds patience{500};

/// An answer of the probe on its way.
class Waiting final : public QObject {
    Q_OBJECT

public:
    std::optional<PointerProbe::Answer> answer;

signals:
    void arrived();
};

} // namespace

QCoro::Task<std::optional<QPointF>> SessionPointer::locate()
{
    const auto waiting = std::make_shared<Waiting>();
    m_probe.ask([waiting](std::optional<PointerProbe::Answer> told) {
        waiting->answer = told;
        emit waiting->arrived();
    });
    co_await qCoro(waiting.get(), &Waiting::arrived, patience);
    if (!waiting->answer)
        co_return std::nullopt;
    m_pixel = waiting->answer->pixel;
    co_return location();
}

QPointF SessionPointer::location() const
{
    return m_screens.layout().pointOf(m_pixel);
}

std::optional<Application> SessionFront::current() const
{
    const auto active = std::ranges::find_if(m_windows.all(), &SessionWindow::isActive);
    return active == m_windows.all().end() ? std::nullopt : std::optional(active->application);
}

PointedWindow SessionWindowAtPointer::current() const
{
    PointedWindow pointed;
    const QList<SessionWindow> &windows = m_windows.all();
    // The active window lies above all others that tell no order.
    auto found = std::ranges::find_if(windows, [this](const SessionWindow &each) {
        return each.isActive && (each.area.isNull() || each.area.contains(m_pointer.pixel()));
    });
    if (found == windows.end()) {
        const auto above = std::find_if(windows.rbegin(), windows.rend(),
            [this](const SessionWindow &each) { return each.area.contains(m_pointer.pixel()); });
        if (above == windows.rend())
            return pointed;
        found = std::prev(above.base());
    }
    pointed.kind = found->isOwn ? PointedWindow::Kind::own : PointedWindow::Kind::content;
    pointed.application = found->application;
    pointed.area = pointsOf(found->area);
    return pointed;
}

QRectF SessionWindowAtPointer::areaOf(const Application &application) const
{
    const auto found = std::ranges::find_if(m_windows.all(),
        [&](const SessionWindow &each) { return each.application.window == application.window; });
    return found == m_windows.all().end() ? QRectF() : pointsOf(found->area);
}

QRectF SessionWindowAtPointer::pointsOf(const QRect &pixels) const
{
    if (pixels.isNull())
        return {};
    const QPointF topLeft = m_screens.layout().pointOf(pixels.topLeft());
    const QPointF bottomRight = m_screens.layout().pointOf(pixels.bottomRight() + QPoint(1, 1));
    return {QPointF(topLeft.x(), bottomRight.y()), QPointF(bottomRight.x(), topLeft.y())};
}

} // namespace nimbrelle

#include "SessionFront.moc"
