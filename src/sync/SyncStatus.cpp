#include "sync/SyncStatus.h"

#include "sync/SyncService.h"

#include <QDateTime>

namespace nimbrelle {

namespace {

QString timeText(Timestamp time)
{
    using namespace std::chrono;
    const auto since = floor<milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(since.count()).toString(QStringLiteral("M 月 d 日 HH:mm"));
}

} // namespace

SyncStatus SyncStatus::of(const SyncService &service)
{
    return {service.busy(), service.lastError(), service.lastSyncAt()};
}

QString SyncStatus::text(Timestamp now) const
{
    if (isBusy)
        return QStringLiteral("正在同步…");
    if (lastError)
        return *lastError + QStringLiteral("。会自动再试");
    if (!lastSyncAt)
        return QStringLiteral("还没同步过");
    const QString lead = QStringLiteral("上次同步：");
    const auto minutes = std::chrono::floor<std::chrono::minutes>(now - *lastSyncAt).count();
    if (minutes < 1)
        return lead + QStringLiteral("刚刚");
    if (minutes < 60)
        return lead + QStringLiteral("%1 分钟前").arg(minutes);
    return lead + timeText(*lastSyncAt);
}

} // namespace nimbrelle
