#pragma once

#include <QCoro/QCoroTask>

class QTextStream;

namespace nimbrelle {
class AIClient;
} // namespace nimbrelle

namespace nimbrelle::SelfTest {

/// Streams one answer and tells in how many pieces it came, or what went wrong. Needs a provider key.
/// Everything handed in outlives the task.
QCoro::Task<> runAsk(const AIClient &client, QTextStream &out);

} // namespace nimbrelle::SelfTest
