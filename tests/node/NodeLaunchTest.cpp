#include "core/node/NodeLaunch.h"

#include <gtest/gtest.h>

#include "core/process/Environment.h"
#include "tests/support/Words.h"

namespace tarnik {

TEST(NodeLaunch, filtersTheInheritedEnvironment) {
    const NodeHome standard{.path = "/Users/me/.tarnik/node", .isDefault = true};
    const NodeHome chosen{.path = "/n", .isDefault = false};
    const auto with = [](Environment base, const Environment& more) {
        base.insert(more.begin(), more.end());
        return base;
    };
    const Environment own{{"HOME", "/h"}, {"PATH", "/p"},         {"openclaw_x", "1"},
                          {"CUA_X", "1"}, {"TARNIK_HOME_X", "1"}, {"X_OPENCLAW_", "1"}};
    Environment inherited = own;
    for (const auto& name : words("OPENCLAW_STATE_DIR OPENCLAW_CUA_DRIVER_ENDPOINT CF_ACCESS_CLIENT "
                                  "CUA_DRIVER_SOCKET TARNIK_HOME TARNIK_NODE_RUNTIME"))
        inherited[name] = "x";
    const Environment ofChosen{{"OPENCLAW_STATE_DIR", "/n"}, {"TARNIK_HOME", "/n"}};
    const std::string endpoint = R"({"v":1,"socketPath":"/s","binaryPath":"/b"})";

    EXPECT_EQ(NodeLaunch::environment({}, standard, {}),
              (Environment{{"HOME", homeDirectory()}, {"PATH", "/usr/bin:/bin:/usr/sbin:/sbin"}}));
    EXPECT_EQ(NodeLaunch::environment(inherited, standard, {}), own);
    EXPECT_EQ(NodeLaunch::environment(inherited, chosen, {}), with(own, ofChosen));
    EXPECT_EQ(NodeLaunch::environment(inherited, standard, CuaDriverEndpoint{"/s", "/b"}),
              with(own, {{"OPENCLAW_CUA_DRIVER_ENDPOINT", endpoint}}));
    EXPECT_EQ(NodeLaunch::environment(inherited, standard, CuaDriverEndpoint{"s", "/b"}), own);
}

}  // namespace tarnik
