#pragma once

#include <QByteArray>
#include <QSizeF>

namespace nimbrelle {

/// Pixels on their way from a capture to the recognizer. Nothing keeps one longer than the gesture that it
/// was taken for, and nothing writes one to the disk.
struct Picture {
    int width = 0; ///< in pixels
    int height = 0;
    double scale = 1; ///< pixels for each point
    QByteArray pixels; ///< rows from the top, each pixel blue, green, red and one unused byte, no padding

    /// False also for pixels that don't fit the size.
    bool isValid() const
    {
        return width > 0 && height > 0 && scale > 0 && pixels.size() == qsizetype{4} * width * height;
    }
    QSizeF points() const { return {width / scale, height / scale}; }

    bool operator==(const Picture &) const = default;
};

} // namespace nimbrelle
