#pragma once

#include <QString>

namespace nimbrelle {

/// Says English aloud, in an American voice at a moderately slow pace. Main thread only.
class Speaker {
public:
    virtual ~Speaker() = default;

    /// Returns at once, and cuts off what is still being said. Where nothing can speak it does nothing.
    virtual void speak(const QString &text) = 0;
};

} // namespace nimbrelle
