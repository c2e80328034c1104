#include "platform/linux/ocr/TesseractRecognizer.h"

#include "platform/linux/WorkThread.h"
#include "platform/linux/ocr/TesseractEngine.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

namespace nimbrelle {

TesseractRecognizer::TesseractRecognizer()
    : m_engine(std::make_unique<TesseractEngine>()), m_thread(std::make_unique<WorkThread>())
{
}

TesseractRecognizer::~TesseractRecognizer()
{
    m_ending.request_stop();
}

QCoro::Task<QList<RecognizedLine>> TesseractRecognizer::recognize(
    Picture picture, RecognitionStyle style, std::stop_token stop)
{
    auto promise = std::make_shared<QPromise<Recognition>>();
    promise->start();
    const QFuture<Recognition> future = promise->future();
    m_thread->run([promise = std::move(promise), engine = m_engine.get(), picture = std::move(picture), style,
                      stop, ending = m_ending.get_token()]() mutable -> WorkThread::Completion {
        Recognition recognition = engine->read(picture, style, stop, ending);
        return [promise = std::move(promise), recognition = std::move(recognition)] {
            promise->addResult(recognition);
            promise->finish();
        };
    });
    const Recognition recognition = co_await qCoro(future).waitForFinished();
    if (stop.stop_requested())
        throw Cancelled();
    if (!recognition.failure.isEmpty())
        throw RecognitionFailure(recognition.failure);
    co_return recognition.lines;
}

} // namespace nimbrelle
