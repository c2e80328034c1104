#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>

#include <chrono>
#include <optional>

namespace nimbrelle {

struct PipeLimit {
    std::chrono::milliseconds time;
    qsizetype bytes;
};

/// All that comes through a pipe until its other end is closed, without blocking. Takes the file over. Absent
/// when it did not end in time, or holds more.
QCoro::Task<std::optional<QByteArray>> readPipe(int file, PipeLimit limit);

} // namespace nimbrelle
