#pragma once

#include <stop_token>
#include <utility>

namespace nimbrelle {

/// The place of a flow of which only one runs at a time: starting the next stops the one before. A stopped
/// flow may resume inside cancel() or renew(), so change your own state first. Declare it after everything
/// that its flow uses.
class TaskSlot {
public:
    TaskSlot() = default;
    TaskSlot(const TaskSlot &) = delete;
    TaskSlot &operator=(const TaskSlot &) = delete;
    ~TaskSlot() { cancel(); }

    /// Stops the flow before; the token is for the new one.
    std::stop_token renew()
    {
        std::stop_source next;
        const std::stop_token token = next.get_token();
        std::exchange(m_source, std::move(next)).request_stop();
        return token;
    }
    void cancel() { renew(); }

private:
    std::stop_source m_source;
};

} // namespace nimbrelle
