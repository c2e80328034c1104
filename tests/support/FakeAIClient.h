#pragma once

#include "ai/AIClient.h"

#include <any>
#include <coroutine>
#include <deque>
#include <exception>
#include <optional>

namespace nimbrelle {

/// The AI of a test: each call waits until the test answers it, or takes an answer laid out before. Its
/// clients are made by factory(), as the flows expect; it must outlive their calls. Stopping a call resumes
/// it inside the request, as the real client does.
class FakeAI {
public:
    struct Call {
        enum class Kind { explain, lookup, translate, mnemonic, stream } kind;
        AppConfig config; ///< the settings that its client was made from
        QStringList arguments; ///< the texts, in declared order
        QList<ChatMessage> messages; ///< of a stream
        double temperature = 0;
    };

    AIClientFactory factory();

    /// All calls so far, oldest first.
    const QList<Call> &calls() const { return m_calls; }
    void forgetCalls() { m_calls.clear(); }
    /// How many calls wait for an answer, or for the next piece.
    qsizetype waiting() const { return static_cast<qsizetype>(m_waiting.size()); }

    /// Answers the call that waits at `index`, 0 being the oldest, or else the next to come. The type is that
    /// of the operation's result.
    void reply(Explanation explanation, std::size_t index = 0) { give(std::move(explanation), index); }
    void reply(LookupResult result, std::size_t index = 0) { give(std::move(result), index); }
    void reply(Translation translation, std::size_t index = 0) { give(std::move(translation), index); }
    void replyTip(QString tip, std::size_t index = 0) { give(std::move(tip), index); }
    /// One piece of a stream, or its end.
    void piece(QString text, std::size_t index = 0) { give(std::optional(std::move(text)), index); }
    void endStream(std::size_t index = 0) { give(std::optional<QString>(), index); }
    template <class Error> void fail(Error error, std::size_t index = 0)
    {
        give(std::make_exception_ptr(std::move(error)), index);
    }

private:
    friend class FakeAIClient;
    struct Slot {
        std::any answer;
        std::coroutine_handle<> waiting;
    };

    /// The next answer as a T. Throws what fail() was given, or Cancelled.
    template <class T> class Answer;

    void give(std::any answer, std::size_t index);
    void forget(Slot *slot);

    QList<Call> m_calls;
    std::deque<std::any> m_answers;
    std::deque<Slot *> m_waiting;
};

} // namespace nimbrelle
