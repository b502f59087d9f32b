#include "core/driver/DriverLaunch.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/driver/BundledDriver.h"
#include "core/driver/CuaDriverEndpoint.h"
#include "core/foundation/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

TEST(DriverLaunch, replacesWhatSpeaksOfAnotherDriver) {
    const Environment kept{
        {"OPENCLAW_STATE_DIR", "x"}, {"CUA_TELEMETRY_ENABLED_X", "x"}, {"cua_driver_x", "x"}};
    Environment inherited{{"CUA_DRIVER_SOCKET", "x"},
                          {"CUA_DRIVER_PERMISSION_MODE", "ask"},
                          {"OPENCLAW_CUA_DRIVER_ENDPOINT", "x"},
                          {"CUA_TELEMETRY_ENABLED", "1"}};
    inherited.insert(kept.begin(), kept.end());
    const auto launch = DriverLaunch::make({.executable = "/d",
                                            .socketPath = "/s",
                                            .hostBundleID = "id",
                                            .hostPID = 47,
                                            .inherited = inherited});

    EXPECT_EQ(launch.arguments.size(), 11U);
    EXPECT_EQ(launch.arguments.at(5), "/s");
    EXPECT_EQ(launch.environment.size(), kept.size() + 7) << "the driver's own seven";
    EXPECT_EQ(launch.environment.at("CUA_DRIVER_PERMISSION_MODE"), "unrestricted");
    EXPECT_EQ(launch.environment.at("CUA_DRIVER_EMBEDDED_HOST_PID"), "47");
    for (const auto& [name, value] : kept) EXPECT_TRUE(launch.environment.contains(name)) << name;
}

TEST(CuaDriverEndpoint, isToldOnlyWhenItCanBeToldSafely) {
    const std::string frame = R"({"v":1,"socketPath":"/","binaryPath":"/b"})";
    const std::string longest(CuaDriverEndpoint::maxBytes - frame.size(), 's');
    struct Case {
        const char* why;
        CuaDriverEndpoint endpoint;
        std::optional<std::string> value;
    };
    const Case cases[] = {
        {"plain",
         {"/s/cua.sock", "/r/cua-driver"},
         R"({"v":1,"socketPath":"/s/cua.sock","binaryPath":"/r/cua-driver"})"},
        {"to be escaped",
         {"/\"\\\n\x01", "/\xC3\xA9"},
         "{\"v\":1,\"socketPath\":\"/\\\"\\\\\\n\\u0001\",\"binaryPath\":\"/\xC3\xA9\"}"},
        {"relative socket", {"s", "/b"}, std::nullopt},
        {"empty driver", {"/s", ""}, std::nullopt},
        {"NUL", {"/s", std::string("/b\0", 3)}, std::nullopt},
        {"as long as may be",
         {"/" + longest, "/b"},
         R"({"v":1,"socketPath":"/)" + longest + R"(","binaryPath":"/b"})"},
        {"too long", {"/s" + longest, "/b"}, std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(c.endpoint.environmentValue(), c.value) << c.why;
}

TEST(BundledDriver, isARunnableFileAndNoLink) {
    const TemporaryFolder folder;
    const std::string driver = folder.path() + "/cua-driver";
    EXPECT_TRUE(writeFile(driver, "", 0600).has_value());
    EXPECT_EQ(BundledDriver::path(folder.path()), std::nullopt) << "not executable";
    std::filesystem::permissions(driver, std::filesystem::perms::owner_all);
    EXPECT_EQ(BundledDriver::path(folder.path()), driver);

    std::filesystem::rename(driver, folder.path() + "/real");
    std::filesystem::create_symlink(folder.path() + "/real", driver);
    EXPECT_EQ(BundledDriver::path(folder.path()), std::nullopt) << "a link";
}

}  // namespace
}  // namespace tarnik
