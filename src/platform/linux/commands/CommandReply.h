#pragma once

#include "platform/SingleInstance.h"

#include <QLocalSocket>

#include <optional>

namespace nimbrelle {

/// What the running program says to a process that gives it a command: one line of JSON each. It speaks
/// first, with a sign of life, so that no command is left with a program that hangs.
struct CommandReply {
    std::optional<QString> output; ///< to be printed as it is
    std::optional<qint64> exitCode; ///< the last reply; one without either is a sign of life

    bool operator==(const CommandReply &) const = default;
};
template <Is<CommandReply> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("output", &Record::output), field("exitCode", &Record::exitCode));

/// What a second start of the program gives: to be shown the first one.
inline const GivenCommand reopening{};

/// Whether the process at the other end belongs to the same user. A socket may stand where others write too.
bool isOwnUser(const QLocalSocket &socket);

} // namespace nimbrelle
