#include "platform/linux/wayland/KWinScript.h"

#include <QCoro/QCoroSignal>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr int patienceMilliseconds = 300;

QDBusMessage callOf(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        KWinScript::service, u"/Scripting"_s, u"org.kde.kwin.Scripting"_s, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

} // namespace

const QString KWinScript::service = u"org.kde.KWin"_s;

KWinScript::KWinScript(const QDBusConnection &bus, QString name) : m_bus(bus), m_name(std::move(name)) { }

KWinScript::~KWinScript()
{
    if (m_file)
        m_bus.send(callOf(u"unloadScript"_s, {m_name}));
}

QCoro::Task<> KWinScript::run(QByteArray script)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    m_file = std::make_unique<QTemporaryFile>(QDir(folder).filePath(u"nimbrelle-XXXXXX.js"_s));
    if (!m_file->open() || m_file->write(script) != script.size())
        co_return;
    m_file->close();
    const QString path = m_file->fileName();
    co_await ask(u"unloadScript"_s, {m_name});
    const QVariant number = co_await ask(u"loadScript"_s, {path, m_name});
    // By the number alone it could not be started on every KWin: some give one out twice.
    if (number.isValid() && number.toInt() >= 0)
        co_await ask(u"start"_s);
}

QCoro::Task<std::optional<bool>> KWinScript::isLoaded()
{
    const QVariant answer = co_await ask(u"isScriptLoaded"_s, {m_name});
    co_return answer.isValid() ? std::optional(answer.toBool()) : std::nullopt;
}

QCoro::Task<QVariant> KWinScript::ask(QString method, QVariantList arguments)
{
    // Ours, so that nobody is answered once we are gone.
    auto *answer =
        new QDBusPendingCallWatcher(m_bus.asyncCall(callOf(method, arguments), patienceMilliseconds), this);
    co_await qCoro(answer, &QDBusPendingCallWatcher::finished);
    answer->deleteLater();
    co_return answer->isError() ? QVariant() : answer->reply().arguments().value(0);
}

} // namespace nimbrelle
