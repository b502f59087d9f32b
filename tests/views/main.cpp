#include <QApplication>

#include <gtest/gtest.h>

// Widgets need an application object, but no display.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setDoubleClickInterval(0);  // nothing comes too soon
    return RUN_ALL_TESTS();
}
