#include "Secretive.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (application.arguments().contains(
            QStringLiteral("--secretive"))) { // a program of its own, to be stopped
        nimbrelle::Secretive window;
        window.show();
        return QApplication::exec();
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
