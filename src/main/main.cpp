#include "main/CommandLine.h"
#include "main/RunDesktop.h"
#include "main/Services.h"
#include "platform/linux/LinuxSingleInstance.h"

#include <QGuiApplication>
#include <QProcess>
#include <QTextStream>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>

using namespace nimbrelle;

namespace {

// The modes print to standard output alone, so what Qt has to say of a bare environment is dropped.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

// Taken before Qt sees the vector, for Qt keeps some arguments for itself.
QStringList rawArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromUtf8(argv[i]));
    return arguments;
}

QCoro::Task<> runToExit(Option::Routine routine, OptionRun run)
{
    const int code = co_await routine(run);
    run.out.flush();
    QCoreApplication::exit(code);
}

std::unique_ptr<QCoreApplication> makeApplication(Option::Needs needs, int &argc, char **argv)
{
    if (needs == Option::Needs::nothing)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen"); // no mode shows a window, and there may be no display
    return std::make_unique<QGuiApplication>(argc, argv);
}

/// A detached process of its own, so that it outlives this one and its terminal.
std::function<bool()> startProgram()
{
    qint64 id = 0;
    if (!QProcess::startDetached(QCoreApplication::applicationFilePath(), {}, {}, &id))
        return [] { return false; };
    return [id] { return ::kill(static_cast<pid_t>(id), 0) == 0; };
}

int giveToProgram(const Option &option, int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    LinuxSingleInstance instance(AppPaths::shared().supportDir);
    return instance.giveToProgram({.option = option.name, .value = {}}, startProgram, out);
}

int runOption(const ChosenOption &chosen, int argc, char **argv)
{
    qInstallMessageHandler(dropMessage);
    if (chosen.option->needs == Option::Needs::program)
        return giveToProgram(*chosen.option, argc, argv);
    const auto application = makeApplication(chosen.option->needs, argc, argv);
    QTextStream out(stdout), in(stdin);
    const Option &option = *chosen.option;
    const QString value = option.meaning ? option.meaning(chosen.value, in) : chosen.value;
    std::optional<LinuxSingleInstance> instance;
    if (option.writes) {
        instance.emplace(Services::shared().paths().supportDir);
        if (const auto code = instance->claimOrGive({.option = option.name, .value = value}, out))
            return *code;
    }
    // From inside the loop, since an exit asked for before it starts is lost.
    QTimer::singleShot(0, application.get(),
        [&] { runToExit(option.run, {.services = Services::shared(), .out = out, .value = value}); });
    const int code = QCoreApplication::exec();
    Services::shared().end();
    return code;
}

} // namespace

int main(int argc, char **argv)
{
    if (const auto chosen = chooseOption(optionTable(), rawArguments(argc, argv)))
        return runOption(*chosen, argc, argv);
    return runDesktop(argc, argv);
}
