#include "app/views/MainView.h"

#include <QAccessible>
#include <QLabel>
#include <QPlainTextEdit>

#include <gtest/gtest.h>

#include "tests/views/ShownView.h"

namespace tarnik {

using Kind = UserIntent::Kind;
using Asked = std::vector<std::pair<Kind, std::string>>;

TEST(MainView, reportsOneIntentPerKeyAndClick) {
    using Act = std::function<void(ShownView&)>;
    const auto key = [](Qt::Key pressed, const char* focus = nullptr) -> Act {
        return [=](auto& view) {
            if (focus) view.button(focus)->setFocus();
            view.press(pressed);
        };
    };
    const auto click = [](const char* name) -> Act {
        return [name](auto& view) { ShownView::click(*view.button(name)); };
    };
    const std::tuple<const char*, Act, std::optional<Kind>> cases[] = {
        {"connect", key(Qt::Key_Return), std::nullopt},  // the field is empty
        {"connect", click("Continue"), std::nullopt},
        {"connect", key(Qt::Key_Escape), std::nullopt},
        {"checking", key(Qt::Key_Return), std::nullopt},
        {"checking", key(Qt::Key_Escape), Kind::cancelPairing},
        {"checking", click("Continue"), std::nullopt},  // disabled
        {"pairing-confirm", key(Qt::Key_Return), Kind::confirmPairing},
        {"pairing-confirm", key(Qt::Key_Enter), Kind::confirmPairing},
        {"pairing-confirm", key(Qt::Key_Escape), Kind::cancelPairing},
        {"pairing-confirm", key(Qt::Key_Return, "Cancel"), Kind::cancelPairing},
        {"pairing-confirm", key(Qt::Key_Space, "Cancel"), Kind::cancelPairing},
        {"pairing-failed", key(Qt::Key_Return), Kind::finishPairing},
        {"pairing-failed", key(Qt::Key_Escape), Kind::finishPairing},
        {"replace-offer", key(Qt::Key_Return), std::nullopt},  // no default button
        {"replace-offer", click("Connect to the new account"), Kind::connectOffer},
        {"replace-offer", key(Qt::Key_Escape), Kind::keepCurrent},
        {"connected-switches-off", click("Turn on Accessibility"), Kind::requestSwitch},
        {"connected-refused-link", key(Qt::Key_A), Kind::dismissMessage},
        {"connected-refused-link", key(Qt::Key_Down, "Turn on Accessibility"), Kind::dismissMessage},
        {"connected-refused-link", key(Qt::Key_Tab), std::nullopt},
        {"connected", key(Qt::Key_A), std::nullopt},
    };
    for (const auto& [screen, act, asked] : cases) {
        ShownView view(sampleContent(screen));
        act(view);
        EXPECT_EQ(view.asked, asked ? Asked({{*asked, ""}}) : Asked()) << screen;
    }
}

TEST(MainView, ignoresAHeldKey) {
    ShownView view(sampleContent("pairing-confirm"));
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(view.window.focusWidget(), &held);
    EXPECT_TRUE(view.asked.empty());
}

TEST(MainView, ignoresInputThatArrivesWithANewButton) {
    QApplication::setDoubleClickInterval(60'000);
    ShownView view(sampleContent("connect"));
    view.show("pairing-confirm");
    view.press(Qt::Key_Return);
    view.press(Qt::Key_Space);
    ShownView::click(*view.button("Connect"));
    EXPECT_TRUE(view.asked.empty());
    const auto isDisabled = [&](const char* name) {
        return QAccessible::queryAccessibleInterface(view.button(name))->state().disabled != 0;
    };
    EXPECT_TRUE(isDisabled("Connect") && !isDisabled("Cancel"));
    EXPECT_TRUE(view.button("Connect")->hasFocus());
    ShownView::click(*view.button("Cancel"));
    QApplication::setDoubleClickInterval(0);
    EXPECT_FALSE(isDisabled("Connect"));
    QAccessible::queryAccessibleInterface(view.button("Connect"))->actionInterface()->doAction("Press");
    EXPECT_EQ(view.asked, (Asked{{Kind::cancelPairing, ""}, {Kind::confirmPairing, ""}}));
}

TEST(MainView, reportsTheTextOfTheField) {
    ShownView view(sampleContent("connect"));
    view.window.fillLinkField("a waiting link");  // not an edit by the user
    view.field().clear();
    view.press(Qt::Key_A, "ä");
    view.press(Qt::Key_Return);
    EXPECT_EQ(view.asked, (Asked{{Kind::dismissMessage, "ä"}, {Kind::connectPasted, "ä"}}));
}

TEST(MainView, acceptsNewContentFromItsClickHandler) {
    ShownView view(sampleContent("pairing-confirm"));
    view.onIntent = [&] { view.show("connected"); };
    ShownView::click(*view.button("Connect"));
    QApplication::processEvents();
    EXPECT_FALSE(view.button("Connect"));
}

TEST(MainView, keepsTheTypedLinkUntilItIsUsed) {
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{"checking", "refused-link"}, "typed"},
        {{"installing", "connect"}, "typed"},
        {{"checking", "pairing-reading", "connect"}, ""},
        {{"replace-offer", "connect"}, ""},
    };
    for (const auto& [screens, left] : cases) {
        ShownView view(sampleContent("connect"));
        view.field().setText("typed");
        for (const auto* screen : screens) view.show(screen);
        EXPECT_EQ(view.field().text(), left) << screens.front() << " ... " << screens.back();
    }
}

TEST(MainView, movesTheFocusOnlyIfItMust) {
    ShownView view(sampleContent("connect"));
    EXPECT_TRUE(view.field().hasFocus());
    view.show("checking");
    EXPECT_EQ(view.window.focusWidget(), &view.view()) << "no key cancels by accident";
    view.show("refused-link");
    EXPECT_TRUE(view.field().hasFocus());
    const std::pair<const char*, const char*> cases[] = {
        {"pairing-confirm", "Connect"}, {"pairing-connecting", "Cancel"}, {"pairing-failed", "Done"}};
    view.show("pairing-reading");
    for (const auto& [screen, focused] : cases) {
        view.show(screen);
        EXPECT_TRUE(view.button(focused)->hasFocus()) << screen;
        if (view.button("Cancel")) view.button("Cancel")->setFocus();
    }
}

TEST(MainView, showsForeignTextVerbatim) {
    const std::string outside = "<b>bold</b> & <img src='x'>";
    auto content = sampleContent("connected-switches-off");
    content.heading = content.announcement = outside;
    content.paragraphs = {outside};
    content.message = {.text = outside};
    content.buttons = {{.title = outside, .accessibleName = outside}};
    content.terminal = {.text = outside, .accessibleName = "terminal"};
    const ShownView view(content);
    int labels = 0;
    for (const auto* label : view.window.findChildren<QLabel*>()) {
        EXPECT_TRUE(label->textFormat() == Qt::PlainText || label->text().isEmpty());
        labels += label->text().toStdString() == outside ? 1 : 0;
    }
    EXPECT_EQ(labels, 3);
    EXPECT_EQ(view.window.findChild<QPlainTextEdit*>()->toPlainText().toStdString(), outside);
    ASSERT_TRUE(view.button(QString::fromStdString(outside)));
    EXPECT_TRUE(view.button(QString::fromStdString(outside))->shortcut().isEmpty());
}

TEST(MainView, announcesNewsToScreenReaders) {
    ShownView view(sampleContent("connect"));
    const auto refused = sampleContent("refused-link");
    view.show(refused);
    const auto* node = QAccessible::queryAccessibleInterface(&view.view());
    std::vector<std::string> announced;
    for (int i = 0; i < node->childCount(); ++i)
        if (const auto* child = node->child(i); child->role() == QAccessible::Notification)
            announced.push_back(child->text(QAccessible::Name).toStdString());
    EXPECT_EQ(announced, std::vector{refused.message->text});
}

}  // namespace tarnik
