#include "Texts.h"
#include "export/WordsFile.h"
#include "frame/Failure.h"

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

/// Any bytes are a list of words or no list: then they fail with a sentence. What comes out can be asked for
/// as it is.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    try {
        const auto read =
            WordsFile::parse({reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)});
        for (const QString &word : read.words)
            require(!word.isEmpty() && word == word.trimmed() && !word.contains(QChar::LineFeed));
    } catch (const Failure &failure) {
        require(!failure.text().isEmpty());
    }
    return 0;
}
