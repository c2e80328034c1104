#include "frame/Recheck.h"

namespace nimbrelle {

QCoro::Task<> Recheck::run(std::stop_token stop)
{
    for (;;) {
        co_await m_clock.sleep(m_every, stop);
        if (stop.stop_requested())
            co_return;
        emit due();
        if (stop.stop_requested())
            co_return; // we may be gone
    }
}

} // namespace nimbrelle
