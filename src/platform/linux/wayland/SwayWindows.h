#pragma once

#include "platform/linux/files/DesktopEntry.h"
#include "platform/linux/wayland/SessionWindows.h"
#include "platform/linux/wayland/SwayIpc.h"

namespace nimbrelle {

/// The windows as sway lays them out. Its tree is read again after each change, and when asked.
class SwayWindows final : public SessionWindows {
    Q_OBJECT

public:
    /// `socket` is a path such as SWAYSOCK holds; `toPixel` turns sway's pixels into those of the X server.
    SwayWindows(const QString &socket, std::function<QPoint(QPointF)> toPixel);

    bool isOffered() const override { return !m_ipc.isEnded(); }
    bool isTold() const override { return m_isTold; }
    const QList<SessionWindow> &all() const override { return m_windows; }
    QCoro::Task<> refresh() override;
    void activate(const Application &application) override;

private:
    void add(const QJsonObject &node);

    SwayIpc m_ipc;
    const std::function<QPoint(QPointF)> m_toPixel;
    ProgramNames m_names;
    QList<SessionWindow> m_windows;
    bool m_isTold = false;
};

} // namespace nimbrelle
