#pragma once

#include "export/GrowthReport.h"

#include <QByteArray>

namespace nimbrelle {

/// The report as one HTML page in UTF-8 that needs nothing beside it and runs nothing.
QByteArray growthPage(const GrowthReport &report);

} // namespace nimbrelle
