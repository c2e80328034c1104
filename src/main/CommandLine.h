#pragma once

#include "platform/ShortcutAction.h"

#include <QCoro/QCoroTask>
#include <QStringList>

#include <functional>
#include <optional>
#include <span>

class QTextStream;

namespace nimbrelle {

class Services;

using PerformAction = std::function<void(ShortcutAction action)>;

/// What a routine is given; all of it outlives the routine.
struct OptionRun {
    Services &services;
    QTextStream &out;
    QString value; ///< empty for a flag
    /// Does what a key of the desktop asks for; empty outside the running program.
    PerformAction perform = {};
};

/// One command-line option: it runs one piece of logic without a window and ends the process.
struct Option {
    enum class Form {
        flag, ///< counts when it stands anywhere in the arguments
        value, ///< counts at its first occurrence, if anything stands behind that
    };
    /// Ends in the exit code.
    using Routine = std::function<QCoro::Task<int>(OptionRun run)>;

    enum class Needs {
        nothing,
        drawing, ///< it takes more of the framework than the others need
        program, ///< only the running program can do it, which is started for it
    };

    QString name;
    Form form = Form::flag;
    Routine run;
    Needs needs = Needs::nothing;
    /// Whether it writes the data files: it then runs where they are held in memory (SingleInstance).
    bool writes = false;
    /// What a value stands for, found in the process that was called; null where it is the value itself.
    QString (*meaning)(const QString &value, QTextStream &in) = nullptr;
};

struct ChosenOption {
    const Option *option = nullptr;
    QString value;
};

/// The first option of `table` that `arguments` hold, whatever their order; absent when none does. The
/// arguments are the whole vector as the process got it: an option counts also where it stands as another
/// one's value.
std::optional<ChosenOption> chooseOption(std::span<const Option> table, const QStringList &arguments);

/// Runs an option that another process gave (SingleInstance), unless it is one that any process can run.
QCoro::Task<int> runGiven(std::span<const Option> table, QString name, OptionRun run);

/// All options in the order in which they are tried.
std::span<const Option> optionTable();

} // namespace nimbrelle
