#include "main/SyncCommands.h"

#include "frame/ConfigStore.h"
#include "notebook/WordStore.h"
#include "sync/SyncLink.h"
#include "sync/SyncService.h"

#include <QTextStream>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

void set(ConfigStore &config, QString AppConfig::*field, const QString &value)
{
    AppConfig changed = config.config();
    changed.*field = value;
    config.setConfig(changed);
}

} // namespace

QCoro::Task<int> syncNow(SyncService *service, const WordStore *store, QTextStream *out)
{
    if (co_await service->syncAfresh()) {
        *out << u"同步好了：%1 个词"_s.arg(store->entries().size()) << Qt::endl;
        co_return 0;
    }
    *out << u"同步失败："_s << service->lastError().value_or(QString()) << Qt::endl
         << service->lastErrorDetail().value_or(QString()) << Qt::endl;
    co_return 1;
}

QString givenCode(const QString &value, QTextStream &in)
{
    constexpr qint64 longestLine = 1 << 16;
    return value == u"-"_s ? in.readLine(longestLine) : value;
}

QCoro::Task<int> connectSync(
    QString code, ConfigStore *config, SyncTransport::Factory connect, QTextStream *out)
{
    const auto link = SyncLink::fromText(code);
    if (!link) {
        *out << u"同步码格式不对"_s << Qt::endl;
        co_return 1;
    }
    const auto message = co_await SyncService::test(*link, std::move(connect));
    if (message) {
        *out << *message << Qt::endl;
        co_return 1;
    }
    set(*config, &AppConfig::syncServer, link->server);
    set(*config, &AppConfig::syncToken, link->token);
    set(*config, &AppConfig::syncPin, link->pin);
    *out << u"已连接 "_s << link->host() << Qt::endl;
    co_return 0;
}

} // namespace nimbrelle
