#pragma once

#include <QCoro/QCoroTask>
#include <QStringList>

#include <functional>
#include <optional>
#include <span>

class QTextStream;

namespace nimbrelle {

class Services;

/// One command-line option: it runs one piece of logic without a window and ends the process.
struct Option {
    enum class Form {
        flag, ///< counts when it stands anywhere in the arguments
        value, ///< counts at its first occurrence, if anything stands behind that
    };
    /// The exit code. `value` is empty for a flag.
    using Routine = std::function<QCoro::Task<int>(Services &services, QString value, QTextStream &out)>;

    QString name;
    Form form = Form::flag;
    Routine run;
};

struct ChosenOption {
    const Option *option = nullptr;
    QString value;
};

/// The first option of `table` that `arguments` hold, whatever their order; absent when none does. The
/// arguments are the whole vector as the process got it: an option counts also where it stands as another
/// one's value.
std::optional<ChosenOption> chooseOption(std::span<const Option> table, const QStringList &arguments);

/// All options in the order in which they are tried.
std::span<const Option> optionTable();

} // namespace nimbrelle
