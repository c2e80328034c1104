#include "frame/AppConfig.h"
#include "frame/RecordCodec.h"

#include <cstdlib>

using namespace nimbrelle;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto config = decode<AppConfig>(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!config)
        return 0;
    const auto text = encode(*config, TextForm::file);
    if (!text || decode<AppConfig>(*text) != config)
        std::abort();
    AppConfig other;
    if (const auto settings = config->studySettings())
        other.takeStudySettings(*settings);
    return 0;
}
