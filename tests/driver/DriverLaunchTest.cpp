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
    const auto launch = DriverLaunch::make({.executable = "/r/cua-driver",
                                            .socketPath = "/s/cua.sock",
                                            .hostBundleID = "com.tarnik.node",
                                            .hostPID = 4711,
                                            .inherited = {{"CUA_DRIVER_SOCKET", "x"},
                                                          {"CUA_DRIVER_PERMISSION_MODE", "ask"},
                                                          {"OPENCLAW_CUA_DRIVER_ENDPOINT", "x"},
                                                          {"OPENCLAW_STATE_DIR", "kept"},
                                                          {"CUA_TELEMETRY_ENABLED", "1"},
                                                          {"CUA_TELEMETRY_ENABLED_X", "kept"},
                                                          {"cua_driver_socket", "kept"}}});
    EXPECT_EQ(launch.executable, "/r/cua-driver");
    EXPECT_EQ(launch.arguments, (std::vector<std::string>{
                                    "serve", "--embedded", "--parent-liveness-stdio", "--no-permissions-gate",
                                    "--socket", "/s/cua.sock", "--host-bundle-id", "com.tarnik.node",
                                    "--permission-mode", "unrestricted", "--dangerously-bypass-approvals"}));
    EXPECT_EQ(launch.environment, (Environment{{"CUA_DRIVER_EMBEDDED", "1"},
                                               {"CUA_DRIVER_HOST_BUNDLE_ID", "com.tarnik.node"},
                                               {"CUA_DRIVER_PERMISSION_MODE", "unrestricted"},
                                               {"CUA_DRIVER_DANGEROUSLY_BYPASS_APPROVALS", "1"},
                                               {"CUA_DRIVER_RS_TELEMETRY_ENABLED", "false"},
                                               {"CUA_DRIVER_RS_UPDATE_CHECK", "false"},
                                               {"CUA_DRIVER_EMBEDDED_HOST_PID", "4711"},
                                               {"OPENCLAW_STATE_DIR", "kept"},
                                               {"CUA_TELEMETRY_ENABLED_X", "kept"},
                                               {"cua_driver_socket", "kept"}}));
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
    EXPECT_EQ(BundledDriver::path(std::nullopt), std::nullopt);
    EXPECT_EQ(BundledDriver::path(folder.path()), std::nullopt);

    EXPECT_TRUE(writeFile(driver, "", 0600).has_value());
    EXPECT_EQ(BundledDriver::path(folder.path()), std::nullopt) << "not executable";
    std::filesystem::permissions(driver, std::filesystem::perms::owner_all);
    EXPECT_EQ(BundledDriver::path(folder.path()), driver);

    std::filesystem::rename(driver, folder.path() + "/real");
    std::filesystem::create_symlink(folder.path() + "/real", driver);
    EXPECT_EQ(BundledDriver::path(folder.path()), std::nullopt) << "a link";
    std::filesystem::remove(driver);
    std::filesystem::create_directory(driver);
    EXPECT_EQ(BundledDriver::path(folder.path()), std::nullopt) << "a folder";
}

}  // namespace
}  // namespace tarnik
