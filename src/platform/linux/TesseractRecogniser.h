#pragma once

#include "platform/TextRecogniser.h"

#include <QThread>

#include <memory>
#include <stop_token>

namespace nimbrelle {

class TesseractEngine;

/// The engine loads with the first picture and stays warm, on a thread of its own.
class TesseractRecogniser final : public TextRecogniser {
public:
    TesseractRecogniser();
    /// Stops a recognition that is under way.
    ~TesseractRecogniser() override;

    QCoro::Task<QList<RecognisedLine>> recognise(
        Picture picture, RecognitionStyle style, std::stop_token stop) override;

private:
    QThread m_thread;
    std::unique_ptr<TesseractEngine> m_engine; ///< lives on the thread
    std::stop_source m_ending;
};

} // namespace nimbrelle
