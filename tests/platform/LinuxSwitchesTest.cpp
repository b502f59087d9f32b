#include "app/platform/linux/LinuxSwitches.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QUrl>
#include <filesystem>

#include <gtest/gtest.h>

#include "app/platform/linux/ScreenPrompt.h"
#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"
#include "tests/support/Eventually.h"
#include "tests/support/Shell.h"

namespace tarnik {
namespace {

using Permissions = QMap<QString, QStringList>;

QDBusMessage valueReply(const QDBusMessage& call, const QVariant& value) {
    return call.createReply(variant(value));
}

QDBusMessage errorReply(const QDBusMessage& call) {
    return call.createErrorReply(QDBusError::Failed, "no");
}

// A desktop with two settings programs, which record the pages that they open.
struct Desktop {
    const TemporaryFolder folder;
    const PrivateBus bus;
    Environment environment{{"PATH", folder.path()}, {"XDG_CURRENT_DESKTOP", "pop:GNOME"}};

    Desktop() {
        for (const char* name : {"mate-at-properties", "gnome-control-center"}) {
            const auto program =
                folder.write(name, "#!/bin/sh\necho \"$*\" >> " + folder.path() + "/opened\n");
            std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        }
    }
    bool opens(const std::string& page) const {
        return eventually([&] {
            QCoreApplication::processEvents();
            return folder.read("opened") == page + "\n";
        });
    }
};

TEST(LinuxSwitches, followsTheAccessibilityBus) {
    const Desktop desktop;
    LinuxSwitches switches(desktop.bus.connect(), desktop.environment, desktop.folder.path());
    const auto isOn = [&] { return switches.isOn(Switch::accessibility); };
    int changes = 0;
    switches.onChange([&] { ++changes; });
    EXPECT_FALSE(switches.prompt(Switch::accessibility));
    switches.openSettings(Switch::accessibility);  // opens, because no service answers the prompt
    EXPECT_TRUE(desktop.opens("universal-access"));

    bool value = true;
    auto service = std::make_optional<FakeService>(
        desktop.bus.connect(), "org.a11y.Bus", [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
            if (call.arguments().value(1) != "IsEnabled") return errorReply(call);
            if (call.member() == "Get") return valueReply(call, value);
            value = call.arguments().value(2).value<QDBusVariant>().variant().toBool();
            return call.createReply();
        });
    EXPECT_TRUE(comesTrue(isOn));
    EXPECT_TRUE(switches.prompt(Switch::accessibility));

    value = false;
    service->signal("/org/a11y/bus", "org.freedesktop.DBus.Properties", "PropertiesChanged",
                    {"org.a11y.Status", QVariantMap(), QStringList()});
    EXPECT_TRUE(comesTrue([&] { return !isOn(); }));

    EXPECT_FALSE(switches.prompt(Switch::accessibility));
    switches.openSettings(Switch::accessibility);  // ignored, because the prompt succeeds
    EXPECT_TRUE(comesTrue(isOn));

    service.reset();
    EXPECT_TRUE(comesTrue([&] { return !isOn(); }));
    EXPECT_EQ(changes, 4);
    EXPECT_TRUE(desktop.opens("universal-access")) << "one program, once";
}

// The portal, its permission store, and the user.
struct Portal {
    const Desktop& desktop;
    Permissions permissions;
    bool grants = true;
    std::string offered = "Screenshot";
    std::string picture;
    QDBusMessage asked;
    FakeService portal{desktop.bus.connect(), "org.freedesktop.portal.Desktop",
                       [this](const QDBusMessage& call) { return answer(call); }};
    FakeService store{desktop.bus.connect(), "org.freedesktop.impl.portal.PermissionStore",
                      [this](const QDBusMessage& call) {
                          const QVariantList wanted{"screenshot", "screenshot"};
                          if (call.arguments() != wanted) return errorReply(call);
                          const auto data = variant(0);
                          return call.createReply({QVariant::fromValue(permissions), data});
                      }};

    explicit Portal(const Desktop& with) : desktop(with) { qDBusRegisterMetaType<Permissions>(); }

    void note(const Permissions& noted) {
        permissions = noted;
        store.signal("/org/freedesktop/impl/portal/PermissionStore",
                     "org.freedesktop.impl.portal.PermissionStore", "Changed", {"screenshot"});
    }

private:
    std::optional<QDBusMessage> answer(const QDBusMessage& call) {
        const QString interface = "org.freedesktop.portal." + QString::fromStdString(offered);
        if (call.member() == "Get" && call.arguments().at(0) == interface) return valueReply(call, 1U);
        if (call.member() != "Screenshot") return errorReply(call);
        asked = call;
        const auto options = qdbus_cast<QVariantMap>(call.arguments().at(1));
        const QString sender = call.service().mid(1).replace('.', '_');
        const QString request = "/org/freedesktop/portal/desktop/request/" + sender + "/" +
                                options.value("handle_token").toString();
        const QString uri = QUrl::fromLocalFile(QString::fromStdString(picture)).toString();
        // Another program sends the opposite response. Both responses precede the reply.
        const auto answers = [&](FakeService& from, bool yes) {
            from.signal(request, "org.freedesktop.portal.Request", "Response",
                        {yes ? 0U : 1U, QVariantMap{{"uri", uri}}});
        };
        answers(store, !grants);
        answers(portal, grants);
        return call.createReply(QVariant::fromValue(QDBusObjectPath(request)));
    }
};

TEST(LinuxSwitches, followsThePermissionStore) {
    Desktop desktop;
    desktop.environment["WAYLAND_DISPLAY"] = "wayland-0";
    LinuxSwitches switches(desktop.bus.connect(), desktop.environment, desktop.folder.path());
    Portal portal(desktop);
    int changes = 0;
    switches.onChange([&] { ++changes; });
    const Permissions noted[] = {
        {{"com.tarnik.node", {"yes"}}}, {{"org.other", {"yes"}}}, {{"", {"yes"}}}, {{"", {"no"}}}};
    for (int expected = 1; const auto& permissions : noted) {
        portal.note(permissions);
        EXPECT_TRUE(comesTrue([&] { return changes == expected; })) << expected;
        EXPECT_EQ(switches.isOn(Switch::screenRecording), expected++ % 2 == 1);
    }

    portal.note({{"", {"yes"}}});
    portal.offered = "ScreenCast";
    LinuxSwitches onlyRecordings(desktop.bus.connect(), desktop.environment, desktop.folder.path());
    bool isKnown = false;
    onlyRecordings.whenKnown([&] { isKnown = true; });
    EXPECT_TRUE(comesTrue([&] { return isKnown; }));
    EXPECT_FALSE(onlyRecordings.isOn(Switch::screenRecording));
}

TEST(LinuxSwitches, promptsForTheScreenAndDeletesTheScreenshot) {
    Desktop desktop;
    desktop.environment["WAYLAND_DISPLAY"] = "wayland-0";
    Portal portal(desktop);
    LinuxSwitches switches(desktop.bus.connect(), desktop.environment, desktop.folder.path());
    portal.picture = desktop.folder.write("Screen shot.png", "a picture");
    portal.grants = false;
    EXPECT_FALSE(switches.prompt(Switch::screenRecording));
    switches.openSettings(Switch::screenRecording);
    EXPECT_TRUE(desktop.opens("applications"));
    EXPECT_FALSE(switches.isOn(Switch::screenRecording));
    EXPECT_FALSE(std::filesystem::exists(portal.picture));

    portal.grants = true;  // the store keeps no entry
    EXPECT_FALSE(switches.prompt(Switch::screenRecording));
    EXPECT_TRUE(comesTrue([&] { return switches.isOn(Switch::screenRecording); }));
    EXPECT_FALSE(qdbus_cast<QVariantMap>(portal.asked.arguments().at(1)).value("interactive").toBool());
}

TEST(ScreenPrompt, deletesNoFileButAFreshScreenshot) {
    const TemporaryFolder folder;
    const std::string pictures = folder.path() + "/pictures";
    shell(folder.path(),
          "mkdir pictures; touch outside pictures/new; touch -d '2 hours ago' pictures/old; "
          "ln -s new pictures/link");
    for (const char* kept : {"/old", "/link", "/../outside"}) {
        removeScreenshot(pictures + kept, {pictures});
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::symlink_status(pictures + kept))) << kept;
    }
    removeScreenshot(folder.path() + "/outside", {pictures});
    EXPECT_TRUE(std::filesystem::exists(folder.path() + "/outside"));
    removeScreenshot(pictures + "/new", {pictures});
    EXPECT_FALSE(std::filesystem::exists(pictures + "/new"));
}

}  // namespace
}  // namespace tarnik
