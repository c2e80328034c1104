#include <QCoreApplication>

#include <gmock/gmock.h>

/// The toolkit asks a library for the system's proxies, which keeps a few hundred bytes of GLib's for good.
/// Nothing of ours is allocated there.
extern "C" const char *__lsan_default_suppressions(); // NOLINT: the name is the sanitizer's
extern "C" const char *__lsan_default_suppressions() // NOLINT
{
    return "leak:libglib-2.0.so";
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
