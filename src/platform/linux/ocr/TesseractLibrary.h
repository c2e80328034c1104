#pragma once

#include <tesseract/capi.h>

namespace nimbrelle {

/// The recognizer's library, loaded when it is first needed: with all that it brings along it takes as long
/// to load as the rest of the program, and many a session never reads the screen.
class TesseractLibrary {
public:
    /// Null where it isn't installed. Any thread.
    static const TesseractLibrary *shared();

    /// For the calling thread. The engine's inner threads wait for each other so busily that two cores are
    /// slower than one, many times over.
    void useOneThread() const;

    decltype(&TessBaseAPICreate) create = nullptr;
    decltype(&TessBaseAPIDelete) destroy = nullptr;
    decltype(&TessBaseAPISetVariable) setVariable = nullptr;
    decltype(&TessBaseAPIInit2) init = nullptr;
    decltype(&TessBaseAPISetPageSegMode) setPageSegMode = nullptr;
    decltype(&TessBaseAPISetImage) setImage = nullptr;
    decltype(&TessBaseAPISetSourceResolution) setSourceResolution = nullptr;
    decltype(&TessBaseAPIRecognize) recognize = nullptr;
    decltype(&TessBaseAPIGetIterator) iterator = nullptr;
    decltype(&TessBaseAPIClear) clear = nullptr;
    decltype(&TessMonitorCreate) createMonitor = nullptr;
    decltype(&TessMonitorDelete) deleteMonitor = nullptr;
    decltype(&TessMonitorSetCancelFunc) setCancel = nullptr;
    decltype(&TessMonitorSetCancelThis) setCancelThis = nullptr;
    decltype(&TessResultIteratorDelete) deleteIterator = nullptr;
    decltype(&TessResultIteratorCopy) copyIterator = nullptr;
    decltype(&TessResultIteratorGetPageIteratorConst) places = nullptr;
    decltype(&TessResultIteratorNext) next = nullptr;
    decltype(&TessResultIteratorGetUTF8Text) text = nullptr;
    decltype(&TessResultIteratorConfidence) confidence = nullptr;
    decltype(&TessPageIteratorIsAtBeginningOf) isAtBeginningOf = nullptr;
    decltype(&TessPageIteratorIsAtFinalElement) isAtFinalElement = nullptr;
    decltype(&TessPageIteratorBoundingBox) boundingBox = nullptr;
    decltype(&TessDeleteText) deleteText = nullptr;

private:
    TesseractLibrary();

    void (*m_setThreadLevels)(int) = nullptr; // absent where the engine was built without threads
    bool m_isComplete = true;
};

} // namespace nimbrelle
