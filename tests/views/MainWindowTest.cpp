#include "app/views/MainWindow.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>

#include <gtest/gtest.h>

#include "tests/views/ShownView.h"

namespace tarnik {

TEST(MainWindow, hidesOnCloseUnlessItStays) {
    for (const auto& stays : {std::function<bool()>(), {[] { return false; }}, {[] { return true; }}}) {
        ShownView view(sampleContent("connected"));
        int closed = 0;
        view.window.setOnClose({.closed = [&closed] { ++closed; }, .stays = stays});
        view.window.close();
        EXPECT_EQ(view.window.isVisible(), stays && stays());
        EXPECT_EQ(closed, 1);
    }
}

TEST(MainWindow, reportsThatItIsSeenAgain) {
    ShownView view(sampleContent("connected"));
    int seen = 0;
    view.window.setOnSeen([&seen] { ++seen; });
    view.window.showMinimized();
    QApplication::processEvents();
    EXPECT_EQ(seen, 0);
    view.window.showNormal();
    QApplication::processEvents();
    EXPECT_GT(seen, 0);
}

TEST(MainWindow, reappearsWithItsPositionTextAndFocus) {
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
    view.window.move(20'000, 20'000);  // on a disconnected screen
    view.window.hide();
    view.window.present();
    EXPECT_TRUE(view.window.screen()->geometry().contains(view.window.geometry()));
}

TEST(MainWindow, followsTheSystemFont) {
    const QFont before = QApplication::font();
    ShownView view(sampleContent("connect"));
    const auto heights = [&] {
        int sum = 0;
        for (const auto* label : view.window.findChildren<QLabel*>())
            if (label->isVisible()) sum += label->sizeHint().height();
        return std::pair(sum, view.window.width());
    };
    const auto [small, narrow] = heights();
    QFont twice = before;
    twice.setPointSizeF(before.pointSizeF() * 1.5);
    QApplication::setFont(twice);
    QApplication::processEvents();
    const auto [large, wide] = heights();
    EXPECT_GT(large, small * 1.25);
    EXPECT_GT(wide, narrow);
    QApplication::setFont(before);
    QApplication::processEvents();
    EXPECT_EQ(heights(), std::pair(small, narrow));
}

TEST(MainWindow, fitsItsScreenAndScrollsToTheFocus) {
    ShownView view(sampleContent("install-failed-long"));
    const QScreen* const small = QGuiApplication::screenAt(QPoint(810, 10));
    view.window.move(small->geometry().topLeft() + QPoint(20, 0));
    QApplication::processEvents();
    ASSERT_EQ(view.window.screen(), small);
    EXPECT_TRUE(small->availableGeometry().contains(view.window.frameGeometry()));

    const auto* scroll = view.window.findChild<QScrollArea*>();
    const auto isInView = [&](const QWidget& widget) {
        return scroll->viewport()->rect().contains(
            QRect(widget.mapTo(scroll->viewport(), QPoint()), widget.size()));
    };
    const auto& last = *view.button("Turn on Screen Recording");
    EXPECT_FALSE(isInView(last));
    view.press(Qt::Key_PageDown);
    EXPECT_TRUE(isInView(last)) << "scroll keys work while no control has the focus";
    view.show("connect");
    EXPECT_EQ(scroll->verticalScrollBar()->value(), 0) << "a new page starts at its top";
    EXPECT_TRUE(isInView(view.field()));
    while (!last.hasFocus()) view.press(Qt::Key_Tab);
    EXPECT_TRUE(isInView(last));
    view.show("refused-link");
    EXPECT_TRUE(isInView(last)) << "the same page keeps its scroll position";
    scroll->verticalScrollBar()->setValue(0);
    view.show("expired-link");
    EXPECT_FALSE(isInView(last)) << "even if the user scrolled away from the focus";

    view.window.move(500, 500);
    QApplication::processEvents();
    EXPECT_EQ(view.window.size(), QSize(460, 560));
    const QRect area = view.window.screen()->availableGeometry();
    Q_EMIT view.window.screen()->availableGeometryChanged(area);
    EXPECT_TRUE(area.contains(view.window.frameGeometry())) << "the available area shrank";
}

}  // namespace tarnik
