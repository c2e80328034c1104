#include "ai/ReplyLimits.h"

#include <QNetworkReply>

namespace nimbrelle {

bool hasOversizedHeaders(const QNetworkReply &reply)
{
    constexpr qsizetype most = 64 * 1024;
    qsizetype size = 0;
    for (const QNetworkReply::RawHeaderPair &header : reply.rawHeaderPairs())
        size += header.first.size() + header.second.size();
    return size > most;
}

} // namespace nimbrelle
