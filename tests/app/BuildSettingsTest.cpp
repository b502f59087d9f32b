#include "app/model/BuildSettings.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/PropertyLists.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

// Origin, base, key and oldest version in one line.
std::string summary(const BuildSettings& settings) {
    return settings.webOrigin.text() + " " +
           (settings.nodeReleaseBase ? settings.nodeReleaseBase->text() : "-") + " " +
           settings.nodeReleasePublicKey.value_or("-") + " " + settings.nodeMinVersion.value_or("-");
}

TEST(BuildSettings, takesTextsThatAreNotEmpty) {
    const std::string standard = TARNIK_DEFAULT_WEB_ORIGIN;
    struct Case {
        std::string entries;
        std::string summary;
    };
    const Case cases[] = {
        {"<key>TKWebOrigin</key><string>http://localhost:1</string><key>TKNodeReleaseBase</key>"
         "<string>https://b/x/</string><key>TKNodeReleasePublicKey</key><string>k</string>"
         "<key>TKNodeMinVersion</key><string>2026.4.9</string>",
         "http://localhost:1 https://b/x/ k 2026.4.9"},
        {"", standard + " - - -"},
        {"<key>TKWebOrigin</key><string></string><key>TKNodeReleaseBase</key><string/>"
         "<key>TKNodeReleasePublicKey</key><string/><key>TKNodeMinVersion</key><string/>",
         standard + " - - -"},
        {"<key>TKWebOrigin</key><true/><key>TKNodeReleaseBase</key><array><string>https://b</string></array>"
         "<key>TKNodeReleasePublicKey</key><data>AAAA</data><key>TKNodeMinVersion</key><integer>1</integer>",
         standard + " - - -"},
        {"<key>TKWebOrigin</key><string>not an "
         "address</string><key>TKNodeReleaseBase</key><string>b/x</string>",
         standard + " - - -"},
        {"<key>TKWebOrigin</key><string>https:///c</string><key>TKNodeReleaseBase</key><string>https:b</"
         "string>",
         standard + " - - -"},
    };
    for (const auto& c : cases) {
        const std::string info = propertyLists::xml("<dict>" + c.entries + "</dict>");
        EXPECT_EQ(summary(BuildSettings::fromPropertyList(info)), c.summary) << c.entries;
    }
    EXPECT_TRUE(BuildSettings::fromPropertyList("").webOrigin.host());
}

TEST(BuildSettings, readsTheInfoPlistOfABundle) {
    const TemporaryFolder folder;
    const std::string contents = folder.path() + "/Contents";
    std::filesystem::create_directory(contents);
    const auto key = [&] {
        return BuildSettings::fromBundle(folder.path()).nodeReleasePublicKey.value_or("-");
    };
    EXPECT_EQ(key(), "-") << "no file";

    const std::string info = contents + "/Info.plist";
    ASSERT_EQ(::mkfifo(info.c_str(), 0600), 0);
    EXPECT_EQ(key(), "-") << "a pipe, which nobody writes to";

    std::filesystem::remove(info);
    std::ofstream(info) << propertyLists::binary({propertyLists::binaryDictionary({1, 2}),
                                                  propertyLists::binaryText("TKNodeReleasePublicKey"),
                                                  propertyLists::binaryText("k")});
    EXPECT_EQ(key(), "k");
}

}  // namespace
}  // namespace tarnik
