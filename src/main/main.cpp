#include "main/CommandLine.h"
#include "main/Desktop.h"
#include "main/Services.h"
#include "main/TerminationSignals.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "shell/views/WindowIcon.h"

#include <QApplication>
#include <QFontInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QTextStream>
#include <QTimer>
#include <QTranslator>

#include <cstdio>
#include <memory>

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

int runOption(const ChosenOption &chosen, int argc, char **argv)
{
    qInstallMessageHandler(dropMessage);
    const auto application = makeApplication(chosen.option->needs, argc, argv);
    QTextStream out(stdout);
    // From inside the loop, since an exit asked for before it starts is lost.
    QTimer::singleShot(0, application.get(), [&chosen, &out] {
        runToExit(chosen.option->run, {Services::shared(), out, chosen.value});
    });
    return QCoreApplication::exec();
}

bool canShowWindows()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return true;
    if (xcb_connection_t *display = xcb_connect(nullptr, nullptr)) {
        const bool isThere = xcb_connection_has_error(display) == 0;
        xcb_disconnect(display);
        if (isThere) {
            qputenv("QT_QPA_PLATFORM", "xcb"); // in a Wayland session too: only there a card can be placed
            return true;
        }
    }
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

/// The words of the toolkit's own menus.
void speakChinese(QApplication &application)
{
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::SimplifiedChineseScript, QLocale::China));
    auto *words = new QTranslator(&application);
    if (words->load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(words);
}

/// Looked up once the status item stands, but before the first card needs them.
void loadFontsSoon(QObject &owner)
{
    constexpr std::chrono::seconds soon{1};
    QTimer::singleShot(soon, &owner, [] { QFontInfo(QGuiApplication::font()).family(); });
}

int runDesktop(int argc, char **argv)
{
    if (!canShowWindows()) {
        std::fputs("没有可用的图形会话：请在桌面里启动，或者设置 DISPLAY。\n", stderr);
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setWindowIcon(windowIcon());
    QGuiApplication::setDesktopFileName(QStringLiteral("nimbrelle"));
    speakChinese(application);
    LinuxSingleInstance instance(Services::shared().paths().supportDir);
    if (!instance.claim())
        return 0;
    const TerminationSignals termination([] { QCoreApplication::quit(); });
    Desktop desktop(Services::shared());
    QObject::connect(&instance, &SingleInstance::reopened, &desktop.delegate(),
        &AppDelegate::applicationShouldHandleReopen);
    QTimer::singleShot(0, &desktop.delegate(), &AppDelegate::applicationDidFinishLaunching);
    loadFontsSoon(application);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    if (const auto chosen = chooseOption(optionTable(), rawArguments(argc, argv)))
        return runOption(*chosen, argc, argv);
    return runDesktop(argc, argv);
}
