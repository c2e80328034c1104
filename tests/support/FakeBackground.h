#pragma once

#include "platform/Background.h"

namespace nimbrelle {

/// Does the work at once.
class FakeBackground final : public Background {
public:
    QCoro::Task<> run(std::function<void()> work) override
    {
        work();
        if (meanwhile && pass-- == 0)
            std::exchange(meanwhile, {})();
        co_return;
    }

    std::function<void()> meanwhile; ///< what happens once, beside the next work that is not passed over
    int pass = 0; ///< so many pieces of work
};

} // namespace nimbrelle
