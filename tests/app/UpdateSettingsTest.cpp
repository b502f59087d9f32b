#include "app/model/UpdateSettings.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/support/PropertyLists.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

TEST(UpdateSettings, areCompleteWithBothTexts) {
    const std::string feed = "<key>SUFeedURL</key><string>https://f/</string>";
    const std::pair<std::string, UpdateSettings> cases[] = {
        {feed + "<key>SUPublicEDKey</key><string>k</string>", {"https://f/", "k"}},
        {feed + "<key>SUPublicEDKey</key><string></string>", {"https://f/", {}}},
        {"<key>SUFeedURL</key><true/><key>SUPublicEDKey</key><string>k</string>", {{}, "k"}},
        {"", {}},
    };
    const TemporaryFolder folder;
    EXPECT_EQ(UpdateSettings::fromBundle(folder.path()), UpdateSettings{});
    std::filesystem::create_directory(folder.path() + "/Contents");
    for (const auto& [entries, expected] : cases) {
        std::ofstream(folder.path() + "/Contents/Info.plist")
            << propertyLists::xml("<dict>" + entries + "</dict>");
        const auto settings = UpdateSettings::fromBundle(folder.path());
        EXPECT_EQ(settings, expected) << entries;
        EXPECT_EQ(settings.isComplete(), expected.feedURL && expected.publicKey) << entries;
    }
}

}  // namespace
}  // namespace tarnik
