#pragma once

#include <QPoint>

#include <chrono>
#include <functional>
#include <optional>

namespace nimbrelle {

/// Asks the desktop where the pointer is, where it tells that only to the window under it.
class PointerProbe {
public:
    virtual ~PointerProbe() = default;

    struct Answer {
        QPoint pixel; ///< of the X server's root window
        /// How long it took. While a button is held the desktop keeps the answer back until the release.
        std::chrono::milliseconds waited{0};

        bool operator==(const Answer &) const = default;
    };

    virtual bool isOffered() const = 0;

    /// `answered` is called once, from the event loop: with nothing when the desktop did not tell, or a later
    /// question has taken the place of this one.
    virtual void ask(std::function<void(std::optional<Answer>)> answered) = 0;
};

} // namespace nimbrelle
