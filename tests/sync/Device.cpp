#include "sync/Device.h"

#include "sync/BundleForm.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

// In memory where there is such a place, for each change flushes files.
QString directoryPattern()
{
    const QString memory = u"/dev/shm"_s;
    return (QDir(memory).exists() ? memory : QDir::tempPath()) + u"/nimbrelle-device-XXXXXX"_s;
}

QCoro::Task<QString> mnemonicOf(WordEntry word, quint32 variant)
{
    co_return u"%1 记法 %2"_s.arg(word.headword).arg(variant);
}

QCoro::Task<> tell(QCoro::Task<bool> run, std::shared_ptr<std::optional<bool>> answer)
{
    *answer = co_await run;
}

} // namespace

QUuid Random::id()
{
    QByteArray bytes;
    for (int i = 0; i < 16; ++i)
        bytes.append(static_cast<char>(below(256)));
    return QUuid::fromRfc4122(bytes);
}

Device::Running::Running(Device &device)
    : config(device.paths, device.clock, device.m_writer), log(device.paths, device.clock, device.m_writer)
{
    const auto mnemonic = [&device](const WordEntry &word, const QStringList &, const QStringList &) {
        return mnemonicOf(word, device.m_ids.below(100));
    };
    store = std::make_unique<WordStore>(
        device.paths, device.clock, config, log, mnemonic, [&device] { return device.m_ids.id(); },
        device.m_writer);
    sync = std::make_unique<SyncService>(
        *store, config, device.paths, device.clock, device.network.connect(), device.m_writer);
}

Device::Device(quint32 seed, DataWriter &writer)
    : directory(directoryPattern()), paths(directory.path()), m_writer(writer), m_ids(seed)
{
    m_running = std::make_unique<Running>(*this);
    connectToServer();
}

void Device::connectToServer()
{
    AppConfig connected = config().config();
    connected.syncServer = u"https://127.0.0.1:1"_s;
    connected.syncToken = u"0123456789abcdef"_s;
    connected.syncPin = QString(64, u'a');
    config().setConfig(connected);
}

void Device::restart()
{
    m_running.reset();
    m_running = std::make_unique<Running>(*this);
}

std::shared_ptr<std::optional<bool>> Device::startSync()
{
    auto answer = std::make_shared<std::optional<bool>>();
    tell(sync().syncNow(), answer);
    return answer;
}

bool Device::syncWith(AnsweringServer &server)
{
    const auto answer = startSync();
    network.serve(server);
    return answer->value_or(false);
}

} // namespace nimbrelle
