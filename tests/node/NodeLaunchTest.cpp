#include "core/node/NodeLaunch.h"

#include <gtest/gtest.h>

#include "core/foundation/UserHome.h"

namespace tarnik {
namespace {

const NodeHome standard{.path = "/Users/me/.tarnik/node", .isDefault = true};
const NodeHome chosen{.path = "/n", .isDefault = false};
const std::string searchPath = "/usr/bin:/bin:/usr/sbin:/sbin";

TEST(NodeLaunch, passesOnTheEnvironmentWithoutWhatSteersTheNode) {
    const Environment own{{"HOME", "/h"}, {"PATH", "/p"}};
    const auto with = [](Environment base, const Environment& more) {
        base.insert(more.begin(), more.end());
        return base;
    };
    const CuaDriverEndpoint endpoint{.socketPath = "/s", .binaryPath = "/b"};
    const CuaDriverEndpoint unspeakable{.socketPath = "s", .binaryPath = "/b"};
    const Environment ofChosen{{"OPENCLAW_STATE_DIR", "/n"}, {"TARNIK_HOME", "/n"}};
    const Environment steering{{"OPENCLAW_STATE_DIR", "x"}, {"OPENCLAW_CUA_DRIVER_ENDPOINT", "x"},
                               {"CF_ACCESS_CLIENT", "x"},   {"CUA_DRIVER_SOCKET", "x"},
                               {"TARNIK_HOME", "x"},        {"TARNIK_NODE_RUNTIME", "x"}};
    const Environment harmless{
        {"openclaw_x", "1"}, {"CUA_X", "1"}, {"TARNIK_HOME_X", "1"}, {"X_OPENCLAW_", "1"}};
    struct Case {
        const char* why;
        Environment inherited;
        const NodeHome& home;
        std::optional<CuaDriverEndpoint> endpoint;
        Environment expected;
    };
    const Case cases[] = {
        {"nothing inherited", {}, standard, {}, {{"HOME", userHome()}, {"PATH", searchPath}}},
        {"what steers the node", with(own, steering), standard, {}, own},
        {"what doesn't", with(own, harmless), standard, {}, with(own, harmless)},
        {"another home", with(own, steering), chosen, {}, with(own, ofChosen)},
        {"an endpoint", with(own, steering), standard, endpoint,
         with(own, {{"OPENCLAW_CUA_DRIVER_ENDPOINT", R"({"v":1,"socketPath":"/s","binaryPath":"/b"})"}})},
        {"an endpoint that can't be told", with(own, steering), standard, unspeakable, own},
    };
    for (const auto& c : cases)
        EXPECT_EQ(NodeLaunch::environment(c.inherited, c.home, c.endpoint), c.expected) << c.why;
}

}  // namespace
}  // namespace tarnik
