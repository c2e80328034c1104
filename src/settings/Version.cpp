#include "settings/Version.h"

namespace nimbrelle::Version {

using namespace Qt::StringLiterals;

QString number()
{
    return u"" NIMBRELLE_VERSION ""_s;
}

QString build()
{
    return u"" NIMBRELLE_BUILD_NUMBER ""_s;
}

} // namespace nimbrelle::Version
