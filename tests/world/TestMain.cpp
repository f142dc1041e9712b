#include <QCoreApplication>
#include <QLocale>
#include <gtest/gtest.h>

/** The main of every test that needs no window. */
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
