#include "app/platform/linux/PortalProxies.h"

#include <QStringList>
#include <optional>

#include <gtest/gtest.h>

#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"

namespace tarnik {
namespace {

// The lookup blocks its thread. The portal is another program with its own event loop.
TEST(PortalProxies, asksThePortalForEachAddress) {
    const PrivateBus bus;
    const auto lookup = portalProxies(bus.connect(), std::chrono::milliseconds(300));
    EXPECT_EQ(lookup("https://a"), ProxyRoutes());

    const BusProgram program(bus);
    std::unique_ptr<FakeService> portal;
    program.run([&] {
        portal = std::make_unique<FakeService>(
            program.bus(), "org.freedesktop.portal.Desktop",
            [](const QDBusMessage& call) -> std::optional<QDBusMessage> {
                const auto url = call.arguments().value(0).toString();
                if (url == "https://silent") return std::nullopt;
                if (url == "https://odd") return call.createReply(QVariant(7));
                if (call.interface() != "org.freedesktop.portal.ProxyResolver" || call.member() != "Lookup")
                    return call.createErrorReply(QDBusError::UnknownMethod, "no");
                return call.createReply(QStringList{"http://proxy:3128", "odd://x:1", "direct://"});
            });
    });
    EXPECT_EQ(lookup("https://a"), (ProxyRoutes{{"http://proxy:3128"}, {}}));
    const TimePoint start = steadyNow();
    EXPECT_EQ(lookup("https://silent"), ProxyRoutes());
    EXPECT_LT(Seconds(steadyNow() - start), Seconds(5));
    EXPECT_EQ(lookup("https://odd"), ProxyRoutes());
    program.run([&] { portal.reset(); });
}

}  // namespace
}  // namespace tarnik
