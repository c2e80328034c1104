#include "frame/DataWriter.h"

#include <algorithm>

namespace nimbrelle {

DataWriter &DataWriter::shared()
{
    static DataWriter writer;
    return writer;
}

void DataWriter::report(const QString &path, WriteResult result)
{
    const auto known = std::ranges::find(m_unwritten, path, &UnwrittenFile::path);
    const bool isKnown = known != m_unwritten.end();
    if (isKnown && result)
        m_unwritten.erase(known);
    else if (isKnown)
        known->error = result.error;
    else if (!result)
        m_unwritten.append({.path = path, .error = result.error});
}

} // namespace nimbrelle
