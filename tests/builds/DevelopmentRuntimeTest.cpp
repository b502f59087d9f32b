// Built twice: with the source that a development build uses, and with that of a release build.

#include <gtest/gtest.h>

#include "app/bundle/BuildKind.h"
#include "app/bundle/BundleInfo.h"
#include "tests/support/PropertyLists.h"

namespace tarnik {
namespace {

std::string text(std::string_view key, std::string_view value) {
    return "<key>" + std::string(key) + "</key><string>" + std::string(value) + "</string>";
}

TEST(DevelopmentRuntime, isThereInDevelopmentBuildsOnly) {
    const std::string most =
        text("TKNodeMinVersion", "2026.4.9") + text("TKDevRuntimePlatform", "linux-x64") +
        text("TKDevRuntimeVersion", "v24.1.0") + text("TKDevRuntimeBase", "http://localhost/") +
        text("TKDevRuntimeFile", "node.tar.gz");
    const auto settingsOf = [](const std::string& entries) {
        return BuildSettings::of(BundleInfo::parse(propertyLists::xml("<dict>" + entries + "</dict>")));
    };
    const BuildSettings whole = settingsOf(most + text("TKDevRuntimeSHA256", "ab"));
    const NodeRuntime runtime{"linux-x64", "v24.1.0", "http://localhost/", "node.tar.gz", "ab"};
    EXPECT_EQ(whole.developmentRuntime, TARNIK_IS_DEVELOPMENT ? std::optional(runtime) : std::nullopt);
    EXPECT_EQ(whole.nodeMinVersion, "2026.4.9");
    EXPECT_EQ(settingsOf(most).developmentRuntime, std::nullopt);
}

TEST(BuildKind, isTheOneThatTheBuildWasGiven) {
    EXPECT_EQ(isDevelopmentBuild(), bool{TARNIK_IS_DEVELOPMENT});
}

}  // namespace
}  // namespace tarnik
