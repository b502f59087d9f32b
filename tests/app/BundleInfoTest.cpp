#include "app/bundle/BundleInfo.h"

#include <gtest/gtest.h>

#include "core/foundation/TarnikIdentity.h"
#include "tests/support/PropertyLists.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

TEST(BuildSettings, ignoreMalformedValues) {
    const auto with = [](const std::string& value) {
        std::string entries;
        for (const char* key :
             {"TKWebOrigin", "TKNodeReleaseBase", "TKNodeReleasePublicKey", "TKNodeMinVersion"})
            entries += "<key>" + std::string(key) + "</key>" + value;
        return BuildSettings::of(BundleInfo::parse(propertyLists::xml("<dict>" + entries + "</dict>")));
    };
    const std::string standard = TARNIK_DEFAULT_WEB_ORIGIN;
    EXPECT_EQ(with("<string>http://localhost:1</string>").webOrigin.text(), "http://localhost:1");
    for (const char* value : {"<true/>", "<string/>", "<array><string>https://b</string></array>"}) {
        EXPECT_EQ(with(value).nodeReleasePublicKey, std::nullopt) << value;
        EXPECT_EQ(with(value).nodeMinVersion, std::nullopt) << value;
    }
    for (const char* value :
         {"<true/>", "<string/>", "<string>b/x</string>", "<string>https:///c</string>"}) {
        EXPECT_EQ(with(value).webOrigin.text(), standard) << value;
        EXPECT_EQ(with(value).nodeReleaseBase, std::nullopt) << value;
    }
    EXPECT_EQ(BuildSettings::defaults().webOrigin.text(), standard);
}

// The build's script writes the Info.plist of a macOS bundle.
TEST(BuildSettings, areReadAsTheBuildWroteThem) {
    const TemporaryFolder bundle;
    const std::string key = "k-_" + std::string(40, 'A');
    shell(bundle.path(),
          "mkdir Contents; PATH=$PATH:/opt/homebrew/bin:/usr/local/bin; cmake -DTARNIK_INFO_PLIST=" +
              bundle.path() +
              "/Contents/Info.plist -DPROJECT_VERSION=2026.1.10 -DTARNIK_WEB_ORIGIN=https://w.example "
              "-DTARNIK_NODE_RELEASE_BASE='https://r/?a&b' -DTARNIK_NODE_RELEASE_PUBLIC_KEY=" +
              key +
              " "
              "-DTARNIK_NODE_MIN_VERSION=2026.1.1 -DTARNIK_UPDATE_FEED='https://u/feed?a&b' "
              "-DTARNIK_UPDATE_PUBLIC_KEY=$(printf '%043d=') -P " TARNIK_SOURCE_DIR
              "/cmake/MacInfoPlist.cmake");
    const auto settings = BuildSettings::fromBundle(bundle.path());
    EXPECT_EQ(settings.webOrigin.text(), "https://w.example");
    EXPECT_EQ(settings.nodeReleaseBase.value_or(Url()).text(), "https://r/?a&b");
    EXPECT_EQ(settings.nodeReleasePublicKey, key);
    EXPECT_EQ(settings.nodeMinVersion, "2026.1.1");
    const UpdateSettings updates{"https://u/feed?a&b", std::string(43, '0') + "="};
    EXPECT_EQ(UpdateSettings::fromBundle(bundle.path()), updates);
    EXPECT_EQ(bundleVersion(bundle.path()), "2026.1.10");
    const auto bytes = bundle.read("Contents/Info.plist");
    EXPECT_EQ(BundleInfo::parse(bytes).text("CFBundleIdentifier"), TarnikIdentity::bundleIdentifier);
    EXPECT_TRUE(bytes.contains("<string>" + std::string(TarnikIdentity::urlScheme) + "</string>"));

    shell(bundle.path(), "sed -i.old s/CFBundleShortVersionString/Other/ Contents/Info.plist");
    EXPECT_EQ(bundleVersion(bundle.path()), "2026.1.10") << "the version of the build";
    EXPECT_EQ(bundleVersion("/none.app"), std::nullopt);
}

TEST(BuildSettings, useOnlyACompleteRuntime) {
    const NodeRuntime runtime{"linux-x64", "v24.1.0", "http://localhost/", "node.tar.gz", "ab"};
    std::string entries;
    for (const auto& [key, value] : {std::pair("Platform", runtime.platform),
                                     {"Version", runtime.version},
                                     {"Base", runtime.base},
                                     {"File", runtime.file},
                                     {"SHA256", runtime.sha256}}) {
        entries += "<key>TKNodeRuntime" + std::string(key) + "</key><string>" + value + "</string>";
        const auto info = BundleInfo::parse(propertyLists::xml("<dict>" + entries + "</dict>"));
        EXPECT_EQ(BuildSettings::of(info).runtime.has_value(), key == std::string("SHA256")) << key;
    }
    EXPECT_EQ(
        BuildSettings::of(BundleInfo::parse(propertyLists::xml("<dict>" + entries + "</dict>"))).runtime,
        runtime);
}

TEST(BundleInfo, findsTheBundleOfAnExecutable) {
    EXPECT_EQ(bundleOf("/A/x.app/Contents/MacOS/tarnik"), "/A/x.app");
    for (const char* path :
         {"/usr/bin/tarnik", "/Contents/MacOS/tarnik", "tarnik", "/A/x.app/Contents/MacOS"})
        EXPECT_EQ(bundleOf(path), std::nullopt) << path;
}

}  // namespace tarnik
