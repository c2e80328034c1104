#pragma once

#include "platform/TextRecognizer.h"

#include <stop_token>

namespace tesseract {
class TessBaseAPI;
}

namespace nimbrelle {

struct Recognition {
    QList<RecognizedLine> lines;
    QString failure; ///< empty when it worked
};

/// The recognition itself, on whatever one thread calls it. Blocks for 0.1 to 2 seconds.
class TesseractEngine final {
public:
    TesseractEngine() = default;
    ~TesseractEngine();
    TesseractEngine(const TesseractEngine &) = delete;
    TesseractEngine &operator=(const TesseractEngine &) = delete;

    /// Ends early, with nothing, once one of the tokens is stopped.
    Recognition read(const Picture &picture, RecognitionStyle style, const std::stop_token &stop,
        const std::stop_token &ending);

private:
    /// What stands against it; empty when it is loaded.
    QString load();

    tesseract::TessBaseAPI *m_api = nullptr;
};

} // namespace nimbrelle
