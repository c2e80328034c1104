#pragma once

#include "export/GrowthReport.h"

#include <QString>

/// The sections of the report's page, each as HTML.
namespace nimbrelle::growth {

QString monthsSection(const GrowthReport &report);
QString stagesSection(const GrowthReport &report);
QString recallSection(const GrowthRecall &recall);
QString collectionSection(const GrowthCollection &collection);
QString sourcesSection(const GrowthSources &sources);
QString memoriesSection(const GrowthMemories &memories);
QString loadSection(const GrowthLoad &load);

} // namespace nimbrelle::growth
