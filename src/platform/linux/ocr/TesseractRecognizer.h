#pragma once

#include "platform/TextRecognizer.h"

#include <memory>
#include <stop_token>

namespace nimbrelle {

class TesseractEngine;
class WorkThread;

/// The engine loads with the first picture and stays warm, on a thread of its own.
class TesseractRecognizer final : public TextRecognizer {
public:
    TesseractRecognizer();
    /// Stops a recognition that is under way.
    ~TesseractRecognizer() override;

    QCoro::Task<QList<RecognizedLine>> recognize(
        Picture picture, RecognitionStyle style, std::stop_token stop) override;

private:
    std::stop_source m_ending;
    std::unique_ptr<TesseractEngine> m_engine; ///< used on the thread alone
    std::unique_ptr<WorkThread> m_thread; ///< ends before the engine goes
};

} // namespace nimbrelle
