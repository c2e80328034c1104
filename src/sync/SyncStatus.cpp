#include "sync/SyncStatus.h"

#include "frame/LocalDateTime.h"
#include "sync/SyncService.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

SyncStatus SyncStatus::of(const SyncService &service)
{
    return {service.busy(), service.lastError(), service.lastSyncAt()};
}

QString SyncStatus::text(Timestamp now) const
{
    if (isBusy)
        return u"正在同步…"_s;
    if (lastError)
        return *lastError + u"。会自动再试"_s;
    if (!lastSyncAt)
        return u"还没同步过"_s;
    const QString lead = u"上次同步："_s;
    const auto minutes = std::chrono::floor<std::chrono::minutes>(now - *lastSyncAt).count();
    if (minutes < 1)
        return lead + u"刚刚"_s;
    if (minutes < 60)
        return lead + u"%1 分钟前"_s.arg(minutes);
    return lead + localDateTime(*lastSyncAt).toString(u"M 月 d 日 HH:mm"_s);
}

} // namespace nimbrelle
