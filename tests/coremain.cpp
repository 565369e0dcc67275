// Test entry point of the Qt-Core-only programs: a QCoreApplication, then
// GoogleTest. Linking no widget module proves the code under test needs none.
#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
