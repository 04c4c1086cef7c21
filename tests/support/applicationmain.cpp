#include <QCoreApplication>

#include <gtest/gtest.h>

// Qt has databases and an event dispatcher only in a program with an application.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // In another locale, Qt writes a warning between the lines that a test expects.
    qputenv("LC_ALL", "C.UTF-8");
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
