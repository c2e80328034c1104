#pragma once

#include "ai/AIClient.h"

class QTextStream;

namespace nimbrelle::SelfTest {

/// Streams one answer and tells in how many pieces it came, or what went wrong. The stream must
/// outlive the run.
QCoro::Task<> runAsk(std::unique_ptr<AIClient> client, QTextStream &out);

} // namespace nimbrelle::SelfTest
