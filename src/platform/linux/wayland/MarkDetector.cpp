#include "platform/linux/wayland/MarkDetector.h"

#include "frame/Clock.h"

#include <QLineF>
#include <QPointer>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto keysRest = 500ms;
constexpr auto promptAnswer = 45ms; // what takes longer was kept back by a held button
constexpr double sameSpot = 3; // pixels

} // namespace

MarkDetector::MarkDetector(Clock &clock, PointerProbe &probe) : m_clock(clock), m_probe(probe) { }

void MarkDetector::claimed()
{
    m_lastClaim = m_clock.now();
    emit began();
    if (m_state == State::idle)
        ask(State::asking);
}

void MarkDetector::cancel()
{
    ++m_round;
    m_state = State::idle;
}

void MarkDetector::ask(State state)
{
    m_state = state;
    m_probe.ask([self = QPointer(this), round = ++m_round](std::optional<PointerProbe::Answer> told) {
        if (self && self->m_round == round)
            self->answer(told);
    });
}

void MarkDetector::answer(std::optional<PointerProbe::Answer> answer)
{
    const bool isAtRest = m_state == State::askingAtRest;
    m_state = State::idle;
    if (!answer)
        return;
    const bool isMouse = isByMouse(*answer);
    m_last = answer->pixel;
    if (isMouse || isAtRest)
        emit marked(answer->pixel);
    else
        waitForRest();
}

bool MarkDetector::isByMouse(const PointerProbe::Answer &answer) const
{
    return !m_last || answer.waited >= promptAnswer || QLineF(*m_last, answer.pixel).length() > sameSpot;
}

void MarkDetector::waitForRest()
{
    m_state = State::keysAreDown;
    const auto left = m_lastClaim + keysRest - m_clock.now();
    m_clock.callAfter(
        std::chrono::ceil<std::chrono::milliseconds>(left), [self = QPointer(this), round = ++m_round] {
            if (!self || self->m_round != round)
                return;
            if (self->m_clock.now() < self->m_lastClaim + keysRest)
                self->waitForRest();
            else
                self->ask(State::askingAtRest); // the mouse may have marked meanwhile
        });
}

} // namespace nimbrelle
