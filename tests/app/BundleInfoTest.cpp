#include "app/bundle/BundleInfo.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/foundation/Files.h"
#include "core/foundation/TarnikIdentity.h"
#include "tests/support/PropertyLists.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

TEST(BuildSettings, ignoreMalformedValues) {
    const auto with = [](const std::string& key, const std::string& value) {
        return BuildSettings::of(
            BundleInfo::parse(propertyLists::xml("<dict><key>" + key + "</key>" + value + "</dict>")));
    };
    const std::string standard = TARNIK_DEFAULT_WEB_ORIGIN;
    EXPECT_EQ(with("TKWebOrigin", "<string>http://localhost:1</string>").webOrigin.text(),
              "http://localhost:1");
    for (const char* value :
         {"<true/>", "<string/>", "<array><string>https://b</string></array>", "<string>b/x</string>",
          "<string>https:b</string>", "<string>https:///c</string>"}) {
        EXPECT_EQ(with("TKWebOrigin", value).webOrigin.text(), standard) << value;
        EXPECT_EQ(with("TKNodeReleaseBase", value).nodeReleaseBase, std::nullopt) << value;
    }
    for (const char* value : {"<true/>", "<string/>", "<data>AAAA</data>"}) {
        EXPECT_EQ(with("TKNodeReleasePublicKey", value).nodeReleasePublicKey, std::nullopt) << value;
        EXPECT_EQ(with("TKNodeMinVersion", value).nodeMinVersion, std::nullopt) << value;
    }
    EXPECT_EQ(BuildSettings::defaults().webOrigin.text(), standard);
}

// Writes the Info.plist of a macOS bundle with the build's script. Returns its bytes, or empty on failure.
std::string buildInfoPlist(const std::string& bundle, const std::string& settings) {
    const std::string file = bundle + "/Contents/Info.plist";
    std::filesystem::create_directory(bundle + "/Contents");
    shell(bundle, "PATH=$PATH:/opt/homebrew/bin:/usr/local/bin; cmake -DPROJECT_VERSION=2026.1.10 " +
                      settings + " -DTARNIK_INFO_PLIST=" + file +
                      " -P " TARNIK_SOURCE_DIR "/cmake/MacInfoPlist.cmake 2>/dev/null || :");
    return readFile(file, PropertyList::maxBytes).value_or("");
}

TEST(BuildSettings, areReadAsTheBuildWroteThem) {
    const TemporaryFolder bundle;
    const std::string key = std::string(43, 'k') + "=";
    const auto bytes =
        buildInfoPlist(bundle.path(),
                       "-DTARNIK_WEB_ORIGIN=https://w.example -DTARNIK_NODE_RELEASE_BASE='https://r/?a&b' "
                       "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=k-_ -DTARNIK_NODE_MIN_VERSION=2026.1.1 "
                       "-DTARNIK_UPDATE_FEED='https://u/feed?a&b' -DTARNIK_UPDATE_PUBLIC_KEY=" +
                           key);
    const auto settings = BuildSettings::fromBundle(bundle.path());
    EXPECT_EQ(settings.webOrigin.text(), "https://w.example");
    EXPECT_EQ(settings.nodeReleaseBase.value_or(Url()).text(), "https://r/?a&b");
    EXPECT_EQ(settings.nodeReleasePublicKey, "k-_");
    EXPECT_EQ(settings.nodeMinVersion, "2026.1.1");
    EXPECT_EQ(UpdateSettings::fromBundle(bundle.path()), (UpdateSettings{"https://u/feed?a&b", key}));
    EXPECT_EQ(bundleVersion(bundle.path()), "2026.1.10");
    EXPECT_EQ(BundleInfo::parse(bytes).text("CFBundleIdentifier"), TarnikIdentity::bundleIdentifier);
    EXPECT_NE(bytes.find("<string>" + std::string(TarnikIdentity::urlScheme) + "</string>"),
              std::string::npos);

    const TemporaryFolder refused;
    EXPECT_EQ(buildInfoPlist(refused.path(), "-DTARNIK_UPDATE_FEED=https://u/"), "") << "without a key";
}

TEST(BundleInfo, findsTheBundleOfAnExecutable) {
    EXPECT_EQ(bundleOf("/A/x.app/Contents/MacOS/tarnik"), "/A/x.app");
    for (const char* path :
         {"/usr/bin/tarnik", "/Contents/MacOS/tarnik", "tarnik", "/A/x.app/Contents/MacOS"})
        EXPECT_EQ(bundleOf(path), std::nullopt) << path;
}

}  // namespace
}  // namespace tarnik
