#include "app/platform/linux/TrayHostMonitor.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"

namespace tarnik {

TEST(TrayHostMonitor, reportsATrayThatStartsAndEnds) {
    const PrivateBus bus;
    std::vector<TrayHost> reported;
    const TrayHostMonitor monitor(bus.connect(), [&](TrayHost host) { reported.push_back(host); });
    using enum TrayHost;
    EXPECT_TRUE(comesTrue([&] { return reported == std::vector{absent}; }));

    bool hasHost = false;
    auto watcher = std::make_optional<FakeService>(
        bus.connect(), "org.kde.StatusNotifierWatcher",
        [&](const QDBusMessage& call) { return call.createReply(variant(hasHost)); });
    hasHost = true;
    watcher->signal("/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
                    "StatusNotifierHostRegistered");
    EXPECT_TRUE(comesTrue([&] { return reported == std::vector{absent, present}; }));
    watcher.reset();
    EXPECT_TRUE(comesTrue([&] { return reported == std::vector{absent, present, absent}; }));
}

TEST(TrayHostMonitor, reportsAMissingBus) {
    std::optional<TrayHost> reported;
    const TrayHostMonitor monitor(QDBusConnection("no such connection"), [&](auto host) { reported = host; });
    EXPECT_TRUE(comesTrue([&] { return reported == TrayHost::absent; }));
}

}  // namespace tarnik
