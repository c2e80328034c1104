#include "support/FakeAIClient.h"

#include "frame/Failure.h"

#include <algorithm>

namespace nimbrelle {

template <class T> class FakeAI::Answer {
public:
    Answer(FakeAI &ai, std::stop_token stop) : m_ai(ai), m_stop(std::move(stop)) { }
    Q_DISABLE_COPY_MOVE(Answer)
    ~Answer()
    {
        m_onStop.reset();
        m_ai.forget(&m_slot);
    }

    bool await_ready()
    {
        if (m_stop.stop_requested())
            return true;
        if (m_ai.m_answers.empty())
            return false;
        m_slot.answer = std::move(m_ai.m_answers.front());
        m_ai.m_answers.pop_front();
        return true;
    }

    void await_suspend(std::coroutine_handle<> waiting)
    {
        m_slot.waiting = waiting;
        m_ai.m_waiting.push_back(&m_slot);
        m_onStop.emplace(m_stop, Wake{this});
    }

    T await_resume()
    {
        if (m_stop.stop_requested())
            throw Cancelled();
        if (const auto *error = std::any_cast<std::exception_ptr>(&m_slot.answer))
            std::rethrow_exception(*error);
        return std::any_cast<T>(m_slot.answer);
    }

private:
    struct Wake {
        Answer *answer;
        void operator()() const
        {
            answer->m_ai.forget(&answer->m_slot);
            if (const auto waiting = std::exchange(answer->m_slot.waiting, nullptr))
                waiting.resume();
        }
    };

    FakeAI &m_ai;
    std::stop_token m_stop;
    Slot m_slot;
    std::optional<std::stop_callback<Wake>> m_onStop;
};

void FakeAI::give(std::any answer, std::size_t index)
{
    if (index >= m_waiting.size()) {
        m_answers.push_back(std::move(answer));
        return;
    }
    Slot *slot = m_waiting[index];
    forget(slot);
    slot->answer = std::move(answer);
    std::exchange(slot->waiting, nullptr).resume();
}

void FakeAI::forget(Slot *slot)
{
    std::erase(m_waiting, slot);
}

class FakeAIClient final : public AIClient {
public:
    FakeAIClient(FakeAI &ai, AppConfig config) : m_ai(ai), m_config(std::move(config)) { }

    QCoro::Task<Explanation> explain(
        QString selection, std::optional<QString> context, std::stop_token stop) const override
    {
        note(FakeAI::Call::Kind::explain, {selection, context.value_or(QString())});
        return answer<Explanation>(&m_ai, std::move(stop));
    }
    QCoro::Task<LookupResult> lookup(QString query, std::stop_token stop) const override
    {
        note(FakeAI::Call::Kind::lookup, {query});
        return answer<LookupResult>(&m_ai, std::move(stop));
    }
    QCoro::Task<Translation> translate(QString text, std::stop_token stop) const override
    {
        note(FakeAI::Call::Kind::translate, {text});
        return answer<Translation>(&m_ai, std::move(stop));
    }
    QCoro::Task<QString> mnemonic(
        WordEntry word, QStringList knownWords, QStringList interests, std::stop_token stop) const override
    {
        note(FakeAI::Call::Kind::mnemonic, QStringList{word.headword} + knownWords + interests);
        return answer<QString>(&m_ai, std::move(stop));
    }
    QCoro::AsyncGenerator<QString> streamChat(
        QList<ChatMessage> messages, double temperature, std::stop_token stop) const override
    {
        return pieces(&m_ai, {FakeAI::Call::Kind::stream, m_config, {}, std::move(messages), temperature},
            std::move(stop));
    }

private:
    void note(FakeAI::Call::Kind kind, QStringList arguments) const
    {
        m_ai.m_calls.append({kind, m_config, std::move(arguments), {}, 0});
    }

    template <class T> static QCoro::Task<T> answer(FakeAI *ai, std::stop_token stop)
    {
        FakeAI::Answer<T> next(*ai, std::move(stop));
        co_return co_await next;
    }

    // Like the real one, it asks for nothing before its first piece is awaited.
    static QCoro::AsyncGenerator<QString> pieces(FakeAI *ai, FakeAI::Call call, std::stop_token stop)
    {
        ai->m_calls.append(std::move(call));
        for (;;) {
            FakeAI::Answer<std::optional<QString>> next(*ai, stop);
            std::optional<QString> piece = co_await next;
            if (!piece)
                co_return;
            co_yield *piece;
        }
    }

    FakeAI &m_ai;
    AppConfig m_config;
};

AIClientFactory FakeAI::factory()
{
    return [this](const AppConfig &config) { return std::make_unique<FakeAIClient>(*this, config); };
}

} // namespace nimbrelle
