// Test entry point: a QApplication on the offscreen platform, then GoogleTest.
#include <gtest/gtest.h>

#include <QApplication>

#include <cstdlib>

int main(int argc, char** argv)
{
    // Tests never need a display; a caller may still choose xvfb by setting the platform.
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
