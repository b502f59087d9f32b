#include <filesystem>

#include <gtest/gtest.h>

#include "app/model/BuildSettings.h"
#include "app/model/InfoText.h"
#include "app/model/UpdateSettings.h"
#include "app/relocation/BundleVersion.h"
#include "core/foundation/Files.h"
#include "core/node/TarnikIdentity.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

// The bundle that the build makes for macOS, as far as its Info.plist goes.
class MacBundle {
public:
    explicit MacBundle(const std::string& settings) {
        std::filesystem::create_directory(path() + "/Contents");
        const std::string cmake =
            "PATH=$PATH:/opt/homebrew/bin:/usr/local/bin; cmake -DPROJECT_VERSION=2026.1.10 ";
        shell(path(), cmake + "-DTARNIK_INFO_PLIST=$PWD/Contents/Info.plist " + settings +
                          " -P " TARNIK_SOURCE_DIR "/cmake/MacInfoPlist.cmake 2>said || :");
    }

    const std::string& path() const { return folder_.path(); }
    std::string said() const { return readFile(path() + "/said", 10'000).value_or(""); }
    std::string bytes() const { return readFile(path() + "/Contents/Info.plist", 100'000).value_or(""); }

    // As the program reads it. Whatever isn't text is "-".
    std::string text(std::string_view key) const {
        const auto info = PropertyList::parse(bytes());
        return info ? infoText(*info, key).value_or("-") : "unreadable";
    }

private:
    TemporaryFolder folder_;
};

TEST(InfoPlist, agreesWithTheProgramAndTheBuild) {
    const MacBundle bundle("");
    const std::pair<const char*, std::string_view> texts[] = {
        {"CFBundleIdentifier", TarnikIdentity::bundleIdentifier},
        {"CFBundleExecutable", "tarnik"},  // what packaging/macos/bundle.sh names it
        {"CFBundleVersion", "2026.1.10"},  // which updates go by
        {"LSMinimumSystemVersion", "13.0"},
    };
    for (const auto& [key, expected] : texts) EXPECT_EQ(bundle.text(key), expected) << key;
    EXPECT_EQ(bundleVersion(bundle.path()), "2026.1.10");

    const auto info = PropertyList::parse(bundle.bytes());
    ASSERT_TRUE(info);
    const auto* types = info->entry("CFBundleURLTypes");
    ASSERT_TRUE(types && types->elements().size() == 1);
    const auto* schemes = types->elements().front().entry("CFBundleURLSchemes");
    ASSERT_TRUE(schemes && schemes->elements().size() == 1);
    EXPECT_EQ(schemes->elements().front().asString(), TarnikIdentity::urlScheme);
}

TEST(InfoPlist, holdsTheSettingsThatTheBuildWasGiven) {
    const std::string key(43, 'k');
    const MacBundle given(
        "-DTARNIK_WEB_ORIGIN=https://w.example -DTARNIK_NODE_RELEASE_BASE='https://r/?a&b' "
        "-DTARNIK_NODE_RELEASE_PUBLIC_KEY=k-_ -DTARNIK_NODE_MIN_VERSION=2026.1.1 "
        "-DTARNIK_UPDATE_FEED='https://u/feed?a&b' -DTARNIK_UPDATE_PUBLIC_KEY=" +
        key + "=");
    const auto settings = BuildSettings::fromBundle(given.path());
    EXPECT_EQ(settings.webOrigin.text(), "https://w.example");
    EXPECT_EQ(settings.nodeReleaseBase.value_or(Url()).text(), "https://r/?a&b");
    EXPECT_EQ(settings.nodeReleasePublicKey, "k-_");
    EXPECT_EQ(settings.nodeMinVersion, "2026.1.1");
    EXPECT_EQ(UpdateSettings::fromBundle(given.path()), (UpdateSettings{"https://u/feed?a&b", key + "="}));

    const MacBundle none("");
    for (const char* absent : {"TKWebOrigin", "TKNodeReleaseBase", "TKNodeReleasePublicKey",
                               "TKNodeMinVersion", "SUFeedURL", "SUPublicEDKey"})
        EXPECT_EQ(none.bytes().find(absent), std::string::npos) << absent;
    EXPECT_EQ(UpdateSettings::fromBundle(none.path()), UpdateSettings{});
}

TEST(InfoPlist, isNotMadeOfSettingsThatCannotWork) {
    for (const char* wrong : {"-DTARNIK_WEB_ORIGIN=w.example", "-DTARNIK_NODE_RELEASE_BASE=r",
                              "-DTARNIK_NODE_RELEASE_PUBLIC_KEY='a b'", "-DTARNIK_UPDATE_FEED=http://u/",
                              "-DTARNIK_UPDATE_FEED=https://u/", "-DTARNIK_UPDATE_PUBLIC_KEY=short="}) {
        const MacBundle bundle(wrong);
        EXPECT_EQ(bundle.bytes(), "") << wrong;
        EXPECT_NE(bundle.said().find("TARNIK_"), std::string::npos) << wrong;
    }
}

}  // namespace
}  // namespace tarnik
