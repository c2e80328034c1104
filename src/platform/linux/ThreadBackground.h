#pragma once

#include "platform/Background.h"
#include "platform/linux/WorkThread.h"

namespace nimbrelle {

/// A thread of its own, which begins with the first work.
class ThreadBackground final : public Background {
public:
    QCoro::Task<> run(std::function<void()> work) override;

private:
    WorkThread m_thread;
};

} // namespace nimbrelle
