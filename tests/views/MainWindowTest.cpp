#include "app/views/MainWindow.h"

#include <QApplication>
#include <QScreen>
#include <QShortcut>

#include <gtest/gtest.h>

#include "tests/views/ShownView.h"

namespace tarnik {
namespace {

TEST(MainWindow, hidesWhenItIsClosedUnlessItIsToStay) {
    struct Case {
        const char* why;
        std::function<bool()> stays;
        bool visible;
    };
    const Case cases[] = {
        {"nobody says", nullptr, false},
        {"as usual", [] { return false; }, false},
        {"it shows how quitting goes on", [] { return true; }, true},
    };
    for (const auto& c : cases) {
        ShownView view(sampleContent("connected"));
        int closed = 0;
        view.window.setOnClose({.closed = [&closed] { ++closed; }, .stays = c.stays});
        view.window.close();
        EXPECT_EQ(view.window.isVisible(), c.visible) << c.why;
        EXPECT_EQ(closed, 1) << c.why;
    }
}

TEST(MainWindow, comesBackAsItWasAndWhereItWas) {
    ShownView view(sampleContent("connect"));
    view.field().setText("typed");
    view.window.move(40, 50);
    view.window.findChild<QShortcut*>()->activated();
    EXPECT_FALSE(view.window.isVisible());
    view.window.present();
    QApplication::processEvents();
    EXPECT_EQ(view.window.pos(), QPoint(40, 50));
    EXPECT_EQ(view.window.size(), QSize(460, 560));
    EXPECT_EQ(view.field().text(), "typed");
    EXPECT_TRUE(view.field().hasFocus());

    view.window.move(60, 70);
    view.window.present();
    EXPECT_EQ(view.window.pos(), QPoint(60, 70));
    view.window.move(20'000, 20'000);  // on a screen that is gone
    view.window.hide();
    view.window.present();
    EXPECT_TRUE(view.window.screen()->geometry().contains(view.window.geometry()));
}

}  // namespace
}  // namespace tarnik
