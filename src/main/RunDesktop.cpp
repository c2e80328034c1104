#include "main/RunDesktop.h"

#include "frame/DataWriter.h"
#include "main/CommandLine.h"
#include "main/Desktop.h"
#include "main/TerminationSignals.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "shell/views/WindowIcon.h"

#include <QApplication>
#include <QFontInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

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
    if (words->load(u"qtbase_zh_CN"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(words);
}

/// Looked up once the status item stands, but before the first card needs them.
void loadFontsSoon(QObject &owner)
{
    constexpr std::chrono::seconds soon{1};
    QTimer::singleShot(soon, &owner, [] { QFontInfo(QGuiApplication::font()).family(); });
}

/// What a command-line mode does beside this program, it does in here. Commands come once the event loop
/// runs, and `perform` is set by then.
CommandRunner givenCommands(Services &services, const PerformAction &perform)
{
    return [&services, &perform](const GivenCommand &command, QTextStream *out) {
        return runGiven(optionTable(), command.option,
            {.services = services, .out = *out, .value = command.value, .perform = perform});
    };
}

int runUntilToldToEnd(Services &services, SingleInstance &instance, PerformAction &perform)
{
    const TerminationSignals termination([] { QCoreApplication::quit(); });
    LinuxPlatform platform;
    Desktop desktop(services, platform.platform());
    perform = [&desktop](ShortcutAction action) { desktop.perform(action); };
    QObject::connect(&instance, &SingleInstance::reopened, &desktop.delegate(),
        &AppDelegate::applicationShouldHandleReopen);
    QTimer::singleShot(0, &desktop.delegate(), &AppDelegate::applicationDidFinishLaunching);
    loadFontsSoon(desktop.delegate());
    const int code = QCoreApplication::exec();
    DataWriter::shared().retry(); // the last chance, while all owners are there
    return code;
}

} // namespace

int runDesktop(int argc, char **argv)
{
    if (!canShowWindows()) {
        std::fputs("没有可用的图形会话：请在桌面里启动，或者设置 DISPLAY。\n", stderr);
        return 1;
    }
    QApplication application(argc, argv);
    Services &services = Services::shared();
    LinuxSingleInstance instance(services.paths().supportDir);
    PerformAction perform;
    const auto claim = instance.claim(givenCommands(services, perform));
    if (claim != SingleInstance::Claim::ours)
        return claim == SingleInstance::Claim::told ? 0 : 1;
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setWindowIcon(windowIcon());
    QGuiApplication::setDesktopFileName(u"nimbrelle"_s);
    speakChinese(application);
    const int code = runUntilToldToEnd(services, instance, perform);
    services.end();
    return code;
}

} // namespace nimbrelle
