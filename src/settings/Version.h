#pragma once

#include <QString>

/// Of this build.
namespace nimbrelle::Version {

QString number(); ///< such as "1.2.0"
QString build(); ///< grows from build to build; empty where the build did not know it

} // namespace nimbrelle::Version
