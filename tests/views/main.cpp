#include <QApplication>
#include <QTemporaryFile>

#include <gtest/gtest.h>

// Runs the tests without a display. The second screen is smaller than the window.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QTemporaryFile screens;
    if (!screens.open()) return 1;
    screens.write(R"({"screens":[
        {"name":"usual","x":0,"y":0,"width":800,"height":800,"logicalDpi":96,"logicalBaseDpi":96,"dpr":1},
        {"name":"small","x":800,"y":0,"width":600,"height":360,"logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})");
    screens.flush();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toUtf8());
    const QApplication application(argc, argv);
    QApplication::setDoubleClickInterval(0);  // buttons accept input at once
    return RUN_ALL_TESTS();
}
