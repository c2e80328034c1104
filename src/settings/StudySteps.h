#pragma once

#include "frame/AppConfig.h"

#include <span>

namespace nimbrelle {

/// A study setting that is changed in steps between two ends.
struct StudyStep {
    const char *name; ///< the setting's key
    const char16_t *before; ///< its label up to the value,
    const char16_t *after; ///< and behind it
    qint64 AppConfig::*value;
    qint64 from;
    qint64 to;
    qint64 by;

    QString label(const AppConfig &config) const;
    /// The value one step up or down, counted from the one that is stored. Absent where that would pass an
    /// end; a stored value that lies beyond an end steps to it.
    std::optional<qint64> up(const AppConfig &config) const;
    std::optional<qint64> down(const AppConfig &config) const;
};

/// In the order of the screen.
std::span<const StudyStep> studySteps();

} // namespace nimbrelle
