// Test main shared by every suite: GoogleTest running inside a QGuiApplication,
// so that fonts, colours, images and signal spies work as in an application.

#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
