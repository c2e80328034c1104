#include "platform/linux/ocr/TesseractRecognizer.h"

#include "platform/linux/ocr/TesseractEngine.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

using namespace Qt::StringLiterals;

namespace nimbrelle {

TesseractRecognizer::TesseractRecognizer() : m_engine(std::make_unique<TesseractEngine>())
{
    m_thread.setObjectName(u"recognition"_s);
}

TesseractRecognizer::~TesseractRecognizer()
{
    m_ending.request_stop();
    m_thread.quit();
    m_thread.wait();
}

QCoro::Task<QList<RecognizedLine>> TesseractRecognizer::recognize(
    Picture picture, RecognitionStyle style, std::stop_token stop)
{
    if (!m_thread.isRunning()) {
        m_engine->moveToThread(&m_thread);
        m_thread.start();
    }
    const auto promise = std::make_shared<QPromise<Recognition>>();
    promise->start();
    const auto work = [=, engine = m_engine.get(), picture = std::move(picture),
                          ending = m_ending.get_token()] {
        promise->addResult(engine->read(picture, style, stop, ending));
        promise->finish();
    };
    QMetaObject::invokeMethod(m_engine.get(), work, Qt::QueuedConnection);
    const QFuture<Recognition> future = promise->future();
    const Recognition recognition = co_await qCoro(future).waitForFinished();
    if (stop.stop_requested())
        throw Cancelled();
    if (!recognition.failure.isEmpty())
        throw RecognitionFailure(recognition.failure);
    co_return recognition.lines;
}

} // namespace nimbrelle
