#include "main/CommandLine.h"

namespace nimbrelle {

namespace {

std::optional<QString> valueOf(const Option &option, const QStringList &arguments)
{
    const qsizetype at = arguments.indexOf(option.name);
    if (at < 0)
        return std::nullopt;
    if (option.form == Option::Form::flag)
        return QString();
    return at + 1 < arguments.size() ? std::optional(arguments[at + 1]) : std::nullopt;
}

} // namespace

std::optional<ChosenOption> chooseOption(std::span<const Option> table, const QStringList &arguments)
{
    for (const Option &option : table) {
        if (const auto value = valueOf(option, arguments))
            return ChosenOption{&option, *value};
    }
    return std::nullopt;
}

} // namespace nimbrelle
