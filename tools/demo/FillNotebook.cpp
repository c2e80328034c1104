#include "DemoNotebook.h"
#include "frame/Failure.h"

#include <QCoreApplication>

#include <cstdio>

/// demo_notebook DIRECTORY: fills a data directory whose settings stand there already.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("Usage: demo_notebook DIRECTORY\n", stderr);
        return 2;
    }
    try {
        nimbrelle::DemoNotebook(QString::fromLocal8Bit(argv[1]), nimbrelle::SystemClock::shared().now())
            .fill();
    } catch (const nimbrelle::Failure &failure) {
        std::fprintf(stderr, "demo_notebook: %s\n", qPrintable(failure.text()));
        return 1;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "demo_notebook: %s\n", failure.what());
        return 1;
    }
    return 0;
}
