#pragma once

#include "frame/Timestamp.h"
#include "platform/linux/wayland/PointerProbe.h"

#include <QObject>

namespace nimbrelle {

class Clock;

/// Tells when the user has marked text, from what programs claim and where the pointer is, where nobody can
/// hear presses and releases. A drag claims again with each of its moves; then the pointer's place becomes
/// known at the release. With the keyboard each key claims, and the place is known at once and stays the
/// same: then it is waited until the keys rest.
class MarkDetector final : public QObject {
    Q_OBJECT

public:
    /// All outlive this.
    MarkDetector(Clock &clock, PointerProbe &probe);

    void claimed();
    /// Forgets what is under way.
    void cancel();
    /// Somebody else has learned where the pointer is.
    void notePointer(QPoint pixel) { m_last = pixel; }

signals:
    void began(); ///< a program marks something; more may follow
    void marked(QPoint pixel); ///< it is done, with the pointer there

private:
    enum class State { idle, asking, keysAreDown, askingAtRest };

    void ask(State state);
    void answer(std::optional<PointerProbe::Answer> answer);
    bool isByMouse(const PointerProbe::Answer &answer) const;
    void waitForRest();

    Clock &m_clock;
    PointerProbe &m_probe;
    State m_state = State::idle;
    std::optional<QPoint> m_last;
    Timestamp m_lastClaim;
    quint64 m_round = 0; ///< what was begun before is void
};

} // namespace nimbrelle
