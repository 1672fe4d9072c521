// Test main shared by every suite: GoogleTest running inside a QGuiApplication,
// so that fonts, colours, images and signal spies work as in an application.

#include <QGuiApplication>

#include <gtest/gtest.h>

// Options of the sanitizers in the instrumented builds, so that every test runs
// with them however it was started; variables of the environment still take
// precedence. Uninstrumented builds never call these.
extern "C" const char *__asan_default_options()
{
    return "detect_leaks=1:abort_on_error=0";
}

extern "C" const char *__ubsan_default_options()
{
    return "print_stacktrace=1:halt_on_error=1";
}

extern "C" const char *__tsan_default_options()
{
    return "halt_on_error=1:second_deadlock_stack=1";
}

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
