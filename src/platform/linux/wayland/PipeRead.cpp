#include "platform/linux/wayland/PipeRead.h"

#include <QCoro/QCoroSignal>
#include <QDeadlineTimer>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <unistd.h>

namespace nimbrelle {
namespace {

struct OpenFile {
    explicit OpenFile(int opened) : number(opened) { }
    ~OpenFile() { ::close(number); }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    const int number;
};

enum class Progress { more, ended, failed };

Progress take(int file, QByteArray &bytes, qsizetype limit)
{
    std::array<char, 65536> piece;
    while (bytes.size() <= limit) {
        const ssize_t count = ::read(file, piece.data(), piece.size());
        if (count > 0)
            bytes.append(piece.data(), count);
        else if (count == 0)
            return Progress::ended;
        else if (errno != EINTR)
            return errno == EAGAIN ? Progress::more : Progress::failed;
    }
    return Progress::failed;
}

} // namespace

QCoro::Task<std::optional<QByteArray>> readPipe(int opened, PipeLimit limit)
{
    const OpenFile file(opened);
    const QDeadlineTimer deadline(limit.time);
    QSocketNotifier readable(opened, QSocketNotifier::Read);
    QByteArray bytes;
    while (true) {
        const Progress progress = take(opened, bytes, limit.bytes);
        if (progress == Progress::ended)
            co_return bytes;
        if (progress == Progress::failed || deadline.hasExpired())
            co_return std::nullopt;
        co_await qCoro(
            &readable, &QSocketNotifier::activated, std::chrono::milliseconds(deadline.remainingTime()));
    }
}

} // namespace nimbrelle
