#pragma once

#include "platform/TextRecognizer.h"

#include <QThread>

#include <memory>
#include <stop_token>

namespace nimbrelle {

class TesseractEngine;

/// The engine loads with the first picture and stays warm, on a thread of its own.
class TesseractRecognizer final : public TextRecognizer {
public:
    TesseractRecognizer();
    /// Stops a recognition that is under way.
    ~TesseractRecognizer() override;

    QCoro::Task<QList<RecognizedLine>> recognize(
        Picture picture, RecognitionStyle style, std::stop_token stop) override;

private:
    QThread m_thread;
    std::unique_ptr<TesseractEngine> m_engine; ///< lives on the thread
    std::stop_source m_ending;
};

} // namespace nimbrelle
