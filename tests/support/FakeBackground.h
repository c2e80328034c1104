#pragma once

#include "platform/Background.h"

namespace nimbrelle {

/// Does the work at once.
class FakeBackground final : public Background {
public:
    QCoro::Task<> run(std::function<void()> work) override
    {
        work();
        if (meanwhile)
            std::exchange(meanwhile, {})();
        co_return;
    }

    std::function<void()> meanwhile; ///< what happens once beside the next work
};

} // namespace nimbrelle
