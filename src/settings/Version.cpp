#include "settings/Version.h"

namespace nimbrelle::Version {

QString number()
{
    return QStringLiteral(NIMBRELLE_VERSION);
}

QString build()
{
    return QStringLiteral(NIMBRELLE_BUILD_NUMBER);
}

} // namespace nimbrelle::Version
