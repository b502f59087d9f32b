#include "app/views/MainWindow.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>
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

TEST(MainWindow, isNeverLargerThanItsScreenAndScrollsToTheFocus) {
    ShownView view(sampleContent("install-failed-long"));
    const QScreen* const small = QGuiApplication::screenAt(QPoint(810, 10));
    view.window.move(small->geometry().topLeft() + QPoint(20, 0));
    QApplication::processEvents();
    ASSERT_EQ(view.window.screen(), small);
    EXPECT_TRUE(small->availableGeometry().contains(view.window.frameGeometry()));

    const auto* scroll = view.window.findChild<QScrollArea*>();
    const auto isVisible = [&](const QWidget& widget) {
        return scroll->viewport()->rect().contains(
            QRect(widget.mapTo(scroll->viewport(), QPoint()), widget.size()));
    };
    const auto& last = *view.button("Turn on Screen Recording");
    EXPECT_FALSE(isVisible(last));
    view.press(Qt::Key_PageDown);
    EXPECT_TRUE(isVisible(last)) << "no control has the keyboard";
    view.show("connect");
    EXPECT_TRUE(isVisible(view.field())) << "another page begins at its top";
    while (!last.hasFocus()) view.press(Qt::Key_Tab);
    EXPECT_TRUE(isVisible(last));
    view.show("refused-link");
    EXPECT_TRUE(isVisible(last)) << "the same page stays where it is";
    view.window.findChild<QScrollArea*>()->verticalScrollBar()->setValue(0);
    view.show("expired-link");
    EXPECT_FALSE(isVisible(last)) << "also where the person has scrolled to";

    view.window.move(500, 500);
    QApplication::processEvents();
    EXPECT_EQ(view.window.size(), QSize(460, 560));
    const QRect area = view.window.screen()->availableGeometry();
    Q_EMIT view.window.screen()->availableGeometryChanged(area);
    EXPECT_TRUE(area.contains(view.window.frameGeometry())) << "a panel came, or a smaller mode";
}

}  // namespace
}  // namespace tarnik
