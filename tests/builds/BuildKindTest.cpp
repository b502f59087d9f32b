// Built twice: with the source that a development build uses, and with that of a release build.

#include "app/bundle/BuildKind.h"

#include <gtest/gtest.h>

#include "app/bundle/BundleInfo.h"
#include "tests/support/PropertyLists.h"

namespace tarnik {

// Only a development build uses the runtime that its settings name, and only if they are complete.
TEST(BuildKind, decidesAboutADevelopmentRuntime) {
    EXPECT_EQ(isDevelopmentBuild(), bool{TARNIK_IS_DEVELOPMENT});
    const NodeRuntime runtime{"linux-x64", "v24.1.0", "http://localhost/", "node.tar.gz", "ab"};
    std::string entries = "<key>TKNodeMinVersion</key><string>2026.4.9</string>";
    for (const auto& [key, value] : {std::pair("Platform", runtime.platform),
                                     {"Version", runtime.version},
                                     {"Base", runtime.base},
                                     {"File", runtime.file},
                                     {"SHA256", runtime.sha256}}) {
        entries += "<key>TKDevRuntime" + std::string(key) + "</key><string>" + value + "</string>";
        const auto info = BundleInfo::parse(propertyLists::xml("<dict>" + entries + "</dict>"));
        const auto settings = BuildSettings::of(info);
        const bool isUsed = TARNIK_IS_DEVELOPMENT && key == std::string("SHA256");
        EXPECT_EQ(settings.developmentRuntime, isUsed ? std::optional(runtime) : std::nullopt) << key;
        EXPECT_EQ(settings.nodeMinVersion, "2026.4.9");
    }
}

}  // namespace tarnik
