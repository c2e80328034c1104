#pragma once

#include "platform/Background.h"

namespace nimbrelle {

/// Does the work at once.
class FakeBackground final : public Background {
public:
    QCoro::Task<> run(std::function<void()> work) override
    {
        work();
        co_return;
    }
};

} // namespace nimbrelle
