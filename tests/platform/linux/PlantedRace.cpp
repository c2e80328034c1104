#include "platform/linux/WorkThread.h"

#include <QCoreApplication>

/// Two threads change one number without a lock. The thread sanitizer has to say so, whatever is left out of
/// its reports.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    int number = 0;
    nimbrelle::WorkThread thread;
    thread.run([&]() -> nimbrelle::WorkThread::Completion {
        ++number;
        return [] { QCoreApplication::quit(); };
    });
    ++number;
    return QCoreApplication::exec();
}
