#include "app/views/DesktopFace.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <algorithm>

#include <gtest/gtest.h>

#include "app/texts/MachineTexts.h"
#include "app/views/QtText.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

struct Fixture : FakeMachine {
    int ended = 0;
    bool atLogin;
    DesktopFace face{{.mainThread = main.record(), .end = [this](int) { ++ended; }, .atLogin = atLogin},
                     sharedModel()};
    Presentation shown = face.presentation();
    AppDelegate delegate{
        {.recordWindow = [](const std::string&) {}, .mainThread = main.record(), .presentation = shown},
        sharedModel()};

    explicit Fixture(bool startedAtLogin = false, std::optional<TrayHost> host = TrayHost::present)
        : atLogin(startedAtLogin) {
        face.attach(delegate);
        if (host) face.setTrayHost(*host);
    }
    static QWidget& window() { return *QApplication::activeWindow(); }
    void showWindow() {
        shown.showWindow();
        QApplication::processEvents();
    }
};

// Closing the window ends its use, which an update waits for, and the message about a link.
TEST(DesktopFace, reportsTheUseAndTheEndOfTheWindow) {
    Fixture f;
    EXPECT_FALSE(f.face.windowInUse());
    f.model().pairing().connect("no link");
    f.showWindow();
    EXPECT_TRUE(f.face.windowInUse());
    EXPECT_TRUE(f.state().linkMessage);
    Fixture::window().close();
    QApplication::processEvents();
    EXPECT_FALSE(f.face.windowInUse());
    EXPECT_FALSE(f.state().linkMessage);
}

TEST(DesktopFace, saysWhatClosingTheWindowDoes) {
    Fixture f;
    f.install();
    f.join();
    f.switches = {.accessibility = true, .screenRecording = true};
    f.model().start();
    f.settle();
    f.showWindow();
    const auto shows = [](const std::string_view text) {
        QApplication::processEvents();
        const auto labels = Fixture::window().findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const auto* label) { return label->text() == qtText(text); });
    };
    EXPECT_TRUE(shows(MachineTexts::staysInPanel));
    f.face.setTrayHost(TrayHost::absent);
    EXPECT_TRUE(shows(MachineTexts::closingEnds));
    f.face.setTrayHost(TrayHost::present);
    EXPECT_TRUE(shows(MachineTexts::staysInPanel));
}

TEST(DesktopFace, endsNothingWhileTheTrayIsUnknown) {
    Fixture f(false, std::nullopt);
    f.shown.makeStatusItem(MenuContent::with(UpdateCheck::unavailable));
    f.showWindow();
    auto& window = Fixture::window();
    window.close();
    EXPECT_FALSE(window.isVisible() || f.delegate.isQuitting());
    f.face.setTrayHost(TrayHost::absent);
    f.main.advance(Seconds(0));
    EXPECT_TRUE(window.isVisible());
    window.close();
    EXPECT_TRUE(window.isVisible() && f.delegate.isQuitting());
}

// The system's item gets pictures for both kinds of screens, and none if the image of the bundle is missing.
TEST(DesktopFace, drawsTheItemThatTheSystemShows) {
    NativeStatusItem::Content content;
    NativeStatusItem::Picture picture;
    const auto make = [&](const NativeStatusItem::Content& given) {
        content = given;
        return NativeStatusItem{.setPicture = [&](const auto& drawn) { picture = drawn; }};
    };
    int opened = 0;
    {
        StatusItem item({.image = "/no/image.png", .make = make}, TrayStatus::working,
                        MenuContent::with(UpdateCheck::unavailable), [&](MenuContent::Action action) {
                            opened += action == MenuContent::Action::openWindow ? 1 : 0;
                        });
        ASSERT_EQ(picture.size(), 2U);
        for (const int scale : {1, 2}) {
            const auto& file = picture[static_cast<std::size_t>(scale - 1)];
            EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(file)).width(),
                      scale * NativeStatusItem::pictureSide);
        }
        item.setStatus(TrayStatus::connected);
        EXPECT_TRUE(picture.empty());
    }
    ASSERT_EQ(content.menu.size(), 3U);
    content.menu[0].perform();
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(content.menu[1].title, "");
    EXPECT_EQ(content.menu[2].key, "q");
    EXPECT_EQ(content.title, "tk");
}

TEST(DesktopFace, keepsAWaitingLinkForTheField) {
    Fixture f;
    for (const char* link : {"before the window exists", "later"}) {
        f.shown.fillLinkField(link);
        f.showWindow();
        EXPECT_EQ(Fixture::window().findChild<QLineEdit*>()->text(), link);
    }
}

TEST(DesktopFace, showsARefusalOnlyToAUserWhoStartedTheProgram) {
    for (const bool atLogin : {false, true}) {
        Fixture f(atLogin);
        int seen = 0;
        f.shown.refuse("in use", [&seen] { ++seen; });
        auto* alert = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        EXPECT_EQ(alert == nullptr, atLogin);
        EXPECT_EQ(seen, atLogin ? 1 : 0);
        if (!alert) continue;
        EXPECT_EQ(alert->informativeText(), "in use");
        alert->close();
        EXPECT_EQ(seen, 1);
    }
}

}  // namespace
}  // namespace tarnik
