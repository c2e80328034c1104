#include "platform/linux/ThreadBackground.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

#include <exception>

namespace nimbrelle {

namespace {

struct Outcome {
    std::exception_ptr failure;
};

} // namespace

QCoro::Task<> ThreadBackground::run(std::function<void()> work)
{
    auto promise = std::make_shared<QPromise<Outcome>>();
    promise->start();
    const QFuture<Outcome> future = promise->future();
    m_thread.run([promise = std::move(promise), work = std::move(work)]() mutable -> WorkThread::Completion {
        Outcome outcome;
        try {
            work();
        } catch (...) {
            outcome.failure = std::current_exception();
        }
        work = {};
        return [promise = std::move(promise), outcome = std::move(outcome)] {
            promise->addResult(outcome);
            promise->finish();
        };
    });
    const Outcome outcome = co_await qCoro(future).waitForFinished();
    if (outcome.failure)
        std::rethrow_exception(outcome.failure);
}

} // namespace nimbrelle
