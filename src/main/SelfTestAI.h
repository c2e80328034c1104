#pragma once

#include "ai/AIClient.h"

class QTextStream;

namespace nimbrelle {
class WordStore;
}

/// The checks and tools that ask the AI. A failed exchange is printed and the next one tried. Store and
/// stream must outlive the run.
namespace nimbrelle::SelfTest {

/// What three typed queries give: a misspelled name, a Chinese word, a brand.
QCoro::Task<> runLookup(std::unique_ptr<AIClient> client, QTextStream &out);

/// What seven selections with their surroundings give.
QCoro::Task<> runExplain(std::unique_ptr<AIClient> client, QTextStream &out);

/// Puts words and names on the always-spell list. `words`: separated by "|".
QCoro::Task<> addSpelling(
    QString words, std::unique_ptr<AIClient> client, WordStore &store, QTextStream &out);

} // namespace nimbrelle::SelfTest
