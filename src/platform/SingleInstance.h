#pragma once

#include "frame/Record.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QTextStream;

namespace nimbrelle {

/// One option of the command line, as the process that may not do it itself gives it to the one that may.
struct GivenCommand {
    QString option;
    QString value; ///< empty for a flag

    bool operator==(const GivenCommand &) const = default;
};
template <Is<GivenCommand> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("option", &Record::option), field("value", &Record::value));

/// Ends in the exit code; what it prints reaches the process that gave the command. `out` outlives it.
using CommandRunner = std::function<QCoro::Task<int>(GivenCommand command, QTextStream *out)>;

/// Starts the program as a process of its own. What it returns tells whether that still runs.
using ProgramStart = std::function<std::function<bool()>()>;

/// Sees to it that one process at a time works on a data directory.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Claim {
        ours,
        told, ///< another one works on it and will show itself
        refused, ///< another one works on it and can't be told; why went to standard error
    };

    /// For the program itself. Waits for a command that works on the directory; `run` gets those that come
    /// from now on. Call it once.
    virtual Claim claim(CommandRunner run) = 0;

    /// For a command that writes, which prints to `out`. Absent when the directory is ours for as long as
    /// this object lives; else the exit code, for the running program has done the command, or could not.
    virtual std::optional<int> claimOrGive(const GivenCommand &command, QTextStream &out) = 0;

    /// For a command that only the running program can do: gives it to that one, after `start` has started it
    /// where none runs. The exit code; what went wrong is printed to `out`.
    virtual int giveToProgram(const GivenCommand &command, const ProgramStart &start, QTextStream &out) = 0;

signals:
    /// The program was started again, and that process has ended in favour of this one.
    void reopened();
};

} // namespace nimbrelle
