#pragma once

#include "coach/CoachHistory.h"
#include "frame/Timestamp.h"

#include <QCoro/QCoroTask>

class QTextStream;

namespace nimbrelle {
class AIClient;
class CoachFacts;
struct AppConfig;
} // namespace nimbrelle

/// What the coach is told, and what it says. Both are read by eye and write nothing.
namespace nimbrelle::SelfTest {

/// The record, today's outcomes, and whether the record holds the provider key or the sync token.
void runCoach(const CoachFacts &facts, const AppConfig &config, Timestamp now, QTextStream &out);

/// A briefing as it streams, and its length. Client and stream must outlive the run.
QCoro::Task<> runCoachAI(
    QString facts, std::optional<CoachHistory::Briefing> previous, const AIClient &client, QTextStream &out);

} // namespace nimbrelle::SelfTest
