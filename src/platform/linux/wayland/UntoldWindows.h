#pragma once

#include "platform/linux/wayland/SessionWindows.h"

namespace nimbrelle {

/// Where the session tells of no window.
class UntoldWindows final : public SessionWindows {
    Q_OBJECT

public:
    bool isOffered() const override { return false; }
    bool isTold() const override { return false; }
    const QList<SessionWindow> &all() const override { return m_none; }
    QCoro::Task<> refresh() override { co_return; }
    void activate(const Application &) override { }

private:
    const QList<SessionWindow> m_none;
};

} // namespace nimbrelle
