#pragma once

#include <QCoro/QCoroAsyncGenerator>
#include <QCoro/QCoroTask>
#include <QStringList>
#include <QTest>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>

namespace nimbrelle {

/// Runs the event loop until `condition` holds; false when it did not within the limit.
inline bool waitUntil(
    const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds{20})
{
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

/// A task that runs on while the test does something else.
template <class T> class Running {
public:
    explicit Running(QCoro::Task<T> task) { watch(std::move(task), m_state); }

    bool isDone() const { return m_state->error || m_state->value; }
    /// Runs the event loop until the task is done; its result, or what it threw.
    T result()
    {
        if (!waitUntil([this] { return isDone(); }))
            throw std::runtime_error("the task never ended");
        if (m_state->error)
            std::rethrow_exception(m_state->error);
        return *m_state->value;
    }

private:
    struct State {
        std::optional<T> value;
        std::exception_ptr error;
    };
    static QCoro::Task<> watch(QCoro::Task<T> task, std::shared_ptr<State> state)
    {
        try {
            state->value = co_await task;
        } catch (...) {
            state->error = std::current_exception();
        }
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

template <class T> T await(QCoro::Task<T> task)
{
    return Running<T>(std::move(task)).result();
}

/// A stream that is read while the test does something else. It stops reading, and lets go of the stream,
/// once `enough` pieces are in.
class RunningStream {
public:
    explicit RunningStream(QCoro::AsyncGenerator<QString> stream, qsizetype enough = -1)
    {
        read(std::move(stream), enough, m_state);
    }

    bool isDone() const { return m_state->isDone; }
    const QStringList &pieces() const { return m_state->pieces; }
    /// Runs the event loop until the stream is done; throws what it threw.
    QStringList result()
    {
        if (!waitUntil([this] { return isDone(); }))
            throw std::runtime_error("the stream never ended");
        if (m_state->error)
            std::rethrow_exception(m_state->error);
        return m_state->pieces;
    }

private:
    struct State {
        QStringList pieces;
        std::exception_ptr error;
        bool isDone = false;
    };
    static QCoro::Task<> read(
        QCoro::AsyncGenerator<QString> stream, qsizetype enough, std::shared_ptr<State> state)
    {
        try {
            auto piece = co_await stream.begin();
            while (piece != stream.end()) {
                state->pieces.append(*piece);
                if (state->pieces.size() == enough)
                    break;
                co_await ++piece;
            }
        } catch (...) {
            state->error = std::current_exception();
        }
        state->isDone = true;
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace nimbrelle
