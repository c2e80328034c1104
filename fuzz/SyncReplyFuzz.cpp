#include "Texts.h"
#include "frame/Failure.h"
#include "sync/BundleForm.h"
#include "sync/SyncProtocol.h"

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

struct OneAnswer final : SyncTransport {
    QCoro::Task<SyncResponse> send(SyncRequest, std::stop_token) override { co_return response; }

    SyncResponse response;
};

QCoro::Task<> talk(SyncProtocol *protocol, qint64 known)
{
    try {
        const SyncReading reading = co_await protocol->read(known, {});
        const bool isDocument = reading.kind == SyncReading::Kind::document;
        require(isDocument == !reading.hash.isEmpty());
        require(known > 0 || reading.kind != SyncReading::Kind::unchanged);
        require(!isDocument || reading.hash == BundleForm::hash(reading.document));
    } catch (const Failure &failure) {
        require(!failure.text().isEmpty());
    }
    try {
        co_await protocol->write(known, {}, {});
    } catch (const Failure &failure) {
        require(!failure.text().isEmpty());
    }
}

} // namespace

/// A status, the length of an ETag, the ETag, and the body: what any server may answer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    constexpr int statuses[]{200, 304, 404, 412, 0, 401, 500};
    const QByteArray rest(reinterpret_cast<const char *>(data) + 2, static_cast<qsizetype>(size) - 2);
    OneAnswer server;
    server.response = {.status = statuses[data[0] % std::size(statuses)],
        .eTag = rest.left(data[1] % 32),
        .body = rest.mid(data[1] % 32)};
    SyncProtocol protocol(server);
    talk(&protocol, data[0] / 128);
    return 0;
}
