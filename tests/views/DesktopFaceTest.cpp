#include "app/views/DesktopFace.h"

#include <QApplication>
#include <QShortcut>

#include <gtest/gtest.h>

#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

struct Fixture : FakeMachine {
    int ended = 0;
    DesktopFace face{{.mainThread = main.record(), .end = [this](int) { ++ended; }}, sharedModel()};
    Presentation shown = face.presentation();
    AppDelegate delegate{
        {.recordWindow = [](const std::string&) {}, .mainThread = main.record(), .presentation = shown},
        sharedModel()};

    Fixture() {
        face.attach(delegate);
        face.setTrayHost(TrayHost::present);
    }
    static QWidget& window() { return *QApplication::activeWindow(); }
    void showWindow() {
        shown.showWindow();
        QApplication::processEvents();
    }
};

// An update waits for as long as this is so.
TEST(DesktopFace, knowsWhetherThePersonUsesTheWindow) {
    Fixture f;
    EXPECT_FALSE(f.face.windowInUse());
    f.showWindow();
    EXPECT_TRUE(f.face.windowInUse());
    Fixture::window().close();
    QApplication::processEvents();
    EXPECT_FALSE(f.face.windowInUse());
}

// A link may bring the window up before there is a menu.
TEST(DesktopFace, quitsByTheKeyThatTheMenuShows) {
    for (const bool isWindowFirst : {true, false}) {
        Fixture f;
        if (isWindowFirst) f.showWindow();
        f.shown.makeStatusItem(MenuContent::with(UpdateCheck::available));
        f.showWindow();
        int keys = 0;
        for (auto* shortcut : Fixture::window().findChildren<QShortcut*>()) {
            if (shortcut->key() != QKeySequence("Ctrl+Q")) continue;
            ++keys;
            Q_EMIT shortcut->activated();
        }
        EXPECT_EQ(keys, 1);
        f.settle();
        EXPECT_TRUE(f.delegate.isQuitting());
        EXPECT_EQ(f.ended, 1);
    }
}

}  // namespace
}  // namespace tarnik
