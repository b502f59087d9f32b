#include <QDBusVariant>
#include <vector>

#include <gtest/gtest.h>

#include "app/platform/linux/ColourSchemeReading.h"
#include "app/platform/linux/TrayHostReading.h"
#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"

namespace tarnik {
namespace {

QVariant variant(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

TEST(ColourSchemeReading, tellsEachChange) {
    const PrivateBus bus;
    std::vector<ColourScheme> told;
    const ColourSchemeReading reading(bus.connect(), [&](ColourScheme scheme) { told.push_back(scheme); });
    using enum ColourScheme;
    EXPECT_TRUE(comesTrue([&] { return told == std::vector{unknown}; }));

    uint scheme = 1;
    FakeService portal(bus.connect(), "org.freedesktop.portal.Desktop",
                       [&](const QDBusMessage& call) { return call.createReply(variant(variant(scheme))); });
    EXPECT_TRUE(comesTrue([&] { return told == std::vector{unknown, dark}; }));
    scheme = 2;
    for (int i = 0; i < 50; ++i) {
        portal.signal("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged",
                      {"org.freedesktop.appearance", "color-scheme", variant(scheme)});
    }
    EXPECT_TRUE(comesTrue([&] { return told == std::vector{unknown, dark, light}; }));
}

TEST(TrayHostReading, tellsOfATrayThatComesLaterAndGoes) {
    const PrivateBus bus;
    std::vector<TrayHost> told;
    const TrayHostReading reading(bus.connect(), [&](TrayHost host) { told.push_back(host); });
    using enum TrayHost;
    EXPECT_TRUE(comesTrue([&] { return told == std::vector{absent}; }));

    bool hasHost = false;
    auto watcher = std::make_optional<FakeService>(
        bus.connect(), "org.kde.StatusNotifierWatcher",
        [&](const QDBusMessage& call) { return call.createReply(variant(hasHost)); });
    hasHost = true;
    watcher->signal("/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
                    "StatusNotifierHostRegistered");
    EXPECT_TRUE(comesTrue([&] { return told == std::vector{absent, present}; }));
    watcher.reset();
    EXPECT_TRUE(comesTrue([&] { return told == std::vector{absent, present, absent}; }));
}

TEST(BusReading, tellsThatThereIsNoBus) {
    std::vector<TrayHost> told;
    const TrayHostReading reading(QDBusConnection("no such connection"),
                                  [&](TrayHost host) { told.push_back(host); });
    EXPECT_TRUE(comesTrue([&] { return told == std::vector{TrayHost::absent}; }));
}

}  // namespace
}  // namespace tarnik
