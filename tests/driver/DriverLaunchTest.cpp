#include "core/driver/DriverLaunch.h"

#include <gtest/gtest.h>

#include "core/driver/CuaDriverEndpoint.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Words.h"

namespace tarnik {

TEST(DriverLaunch, replacesTheVariablesOfAnotherDriver) {
    const Environment kept{
        {"OPENCLAW_STATE_DIR", "x"}, {"CUA_TELEMETRY_ENABLED_X", "x"}, {"cua_driver_x", "x"}};
    Environment inherited = kept;
    for (const auto& name : words("CUA_DRIVER_SOCKET CUA_DRIVER_PERMISSION_MODE OPENCLAW_CUA_DRIVER_ENDPOINT "
                                  "CUA_TELEMETRY_ENABLED"))
        inherited[name] = "x";
    const auto launch = DriverLaunch::make({"/d", "/s", "id", 47, inherited});

    EXPECT_EQ(launch.arguments.size(), 11U);
    EXPECT_EQ(launch.arguments.at(5), "/s");
    EXPECT_EQ(launch.environment.size(), kept.size() + 7) << "the driver's own seven";
    EXPECT_EQ(launch.environment.at("CUA_DRIVER_PERMISSION_MODE"), "unrestricted");
    EXPECT_EQ(launch.environment.at("CUA_DRIVER_EMBEDDED_HOST_PID"), "47");
    for (const auto& [name, value] : kept) EXPECT_TRUE(launch.environment.contains(name)) << name;
}

TEST(CuaDriverEndpoint, encodesValidPathsOnly) {
    const std::string start = R"({"v":1,"socketPath":"/)";
    const std::string end = R"(","binaryPath":"/b"})";
    const std::string longest(CuaDriverEndpoint::maxBytes - start.size() - end.size(), 's');
    const std::pair<CuaDriverEndpoint, std::optional<std::string>> cases[] = {
        {{"/\"\\\n\x01", "/b"}, start + R"(\"\\\n\u0001)" + end},
        {{"/" + longest, "/b"}, start + longest + end},
        {{"/s" + longest, "/b"}, std::nullopt},
        {{"s", "/b"}, std::nullopt},
        {{"/s", ""}, std::nullopt},
        {{"/s", std::string("/b\0", 3)}, std::nullopt},
    };
    for (const auto& [endpoint, value] : cases)
        EXPECT_EQ(endpoint.environmentValue(), value) << endpoint.socketPath.substr(0, 100);
}

TEST(BundledDriver, isAnExecutableFileAndNotALink) {
    const TemporaryFolder folder;
    for (const auto& [script, isFound] : {std::pair("touch cua-driver; chmod 600 cua-driver", false),
                                          {"chmod 700 cua-driver", true},
                                          {"mv cua-driver real; ln -s real cua-driver", false}}) {
        shell(folder.path(), script);
        EXPECT_EQ(BundledDriver::path(folder.path()).has_value(), isFound) << script;
    }
}

}  // namespace tarnik
