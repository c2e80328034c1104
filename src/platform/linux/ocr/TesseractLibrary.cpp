#include "platform/linux/ocr/TesseractLibrary.h"

#include <QLibrary>

#include <type_traits>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr int interfaceVersion = 5;

} // namespace

TesseractLibrary::TesseractLibrary()
{
    QLibrary library(u"tesseract"_s, interfaceVersion); // stays loaded to the end
    const auto find = [&](auto &function, const char *name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
        m_isComplete = m_isComplete && function;
    };
    find(create, "TessBaseAPICreate");
    find(destroy, "TessBaseAPIDelete");
    find(setVariable, "TessBaseAPISetVariable");
    find(init, "TessBaseAPIInit2");
    find(setPageSegMode, "TessBaseAPISetPageSegMode");
    find(setImage, "TessBaseAPISetImage");
    find(setSourceResolution, "TessBaseAPISetSourceResolution");
    find(recognize, "TessBaseAPIRecognize");
    find(iterator, "TessBaseAPIGetIterator");
    find(clear, "TessBaseAPIClear");
    find(createMonitor, "TessMonitorCreate");
    find(deleteMonitor, "TessMonitorDelete");
    find(setCancel, "TessMonitorSetCancelFunc");
    find(setCancelThis, "TessMonitorSetCancelThis");
    find(deleteIterator, "TessResultIteratorDelete");
    find(copyIterator, "TessResultIteratorCopy");
    find(places, "TessResultIteratorGetPageIteratorConst");
    find(next, "TessResultIteratorNext");
    find(text, "TessResultIteratorGetUTF8Text");
    find(confidence, "TessResultIteratorConfidence");
    find(isAtBeginningOf, "TessPageIteratorIsAtBeginningOf");
    find(isAtFinalElement, "TessPageIteratorIsAtFinalElement");
    find(boundingBox, "TessPageIteratorBoundingBox");
    find(deleteText, "TessDeleteText");
    // Not the engine's own, but of what came with it.
    m_setThreadLevels =
        reinterpret_cast<decltype(m_setThreadLevels)>(library.resolve("omp_set_max_active_levels"));
}

void TesseractLibrary::useOneThread() const
{
    if (m_setThreadLevels)
        m_setThreadLevels(0);
}

const TesseractLibrary *TesseractLibrary::shared()
{
    static const TesseractLibrary library;
    return library.m_isComplete ? &library : nullptr;
}

} // namespace nimbrelle
