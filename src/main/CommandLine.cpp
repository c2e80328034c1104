#include "main/CommandLine.h"

#include <QTextStream>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

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

bool isForRunningProgram(const Option &option)
{
    return option.writes || option.needs == Option::Needs::program;
}

} // namespace

std::optional<ChosenOption> chooseOption(std::span<const Option> table, const QStringList &arguments)
{
    for (const Option &option : table) {
        if (const auto value = valueOf(option, arguments))
            return ChosenOption{.option = &option, .value = *value};
    }
    return std::nullopt;
}

QCoro::Task<int> runGiven(std::span<const Option> table, QString name, OptionRun run)
{
    const auto option = std::ranges::find(table, name, &Option::name);
    if (option == table.end() || !isForRunningProgram(*option)) {
        run.out << u"正在运行的 Nimbrelle 不认识这个命令："_s << name << Qt::endl;
        co_return 1;
    }
    co_return co_await option->run(run);
}

} // namespace nimbrelle
