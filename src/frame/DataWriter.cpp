#include "frame/DataWriter.h"

#include <algorithm>

namespace nimbrelle {

DataWriter &DataWriter::shared()
{
    static DataWriter writer;
    return writer;
}

void DataWriter::report(const QString &path, WriteResult result, Again again)
{
    const auto known = std::ranges::find(m_unwritten, path, &UnwrittenFile::path);
    const bool isKnown = known != m_unwritten.end();
    if (result) {
        m_again.remove(path);
        if (isKnown)
            m_unwritten.erase(known);
        retry(); // there may be room again for the others
        return;
    }
    if (isKnown)
        known->error = result.error;
    else
        m_unwritten.append({.path = path, .error = result.error});
    if (again.write)
        m_again[path] = std::move(again);
}

void DataWriter::retry()
{
    if (m_isRetrying || m_again.isEmpty())
        return;
    m_isRetrying = true;
    for (const Again &again : QMap(m_again))
        again.write();
    m_isRetrying = false;
}

void DataWriter::forget(const void *owner)
{
    m_again.removeIf([owner](const auto &entry) { return entry.value().owner == owner; });
}

} // namespace nimbrelle
