#include "app/platform/DefaultsFile.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

struct Place {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/tarnik/defaults.json";
    std::vector<std::string> logged;

    UserDefaults defaults() {
        return DefaultsFile::operations(path, [this](const std::string& line) { logged.push_back(line); });
    }
    void write(std::string_view text) const { folder.write("tarnik/defaults.json", text); }
    std::string read(const std::string& suffix = "") const {
        return folder.read("tarnik/defaults.json" + suffix);
    }
};

TEST(DefaultsFile, keepsMembersOfOtherPrograms) {
    Place place;
    place.write(R"({"NodeHome": "/a \"b\"", "Other": {"deep": [1, null]}, "Text": "true"})");
    const auto defaults = place.defaults();
    EXPECT_EQ(defaults.text("NodeHome"), "/a \"b\"");
    EXPECT_EQ(defaults.text("Other"), std::nullopt);
    EXPECT_FALSE(defaults.flag("Text"));
    place.write(R"({"NodeHome": "/c", "Other": {"deep": [1, null]}})");  // by another program
    defaults.setFlag("AccessibilityWasOn");
    EXPECT_TRUE(defaults.flag("AccessibilityWasOn"));
    EXPECT_EQ(place.read(),
              "{\n    \"AccessibilityWasOn\": true,\n    \"NodeHome\": \"/c\",\n"
              "    \"Other\": {\"deep\":[1,null]}\n}\n");
    EXPECT_TRUE(place.defaults().flag("AccessibilityWasOn"));
    defaults.clearFlag("AccessibilityWasOn");
    EXPECT_FALSE(defaults.flag("AccessibilityWasOn") || place.defaults().flag("AccessibilityWasOn"));
    EXPECT_EQ(fs::status(place.path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(DefaultsFile, renamesAnUnreadableFileAndFollowsNoLink) {
    for (const std::string broken : {"{\"a\": tru", "[]", "", "link"}) {
        Place place;
        place.write(broken);
        if (broken == "link") fs::create_symlink(place.folder.write("target", "link"), place.path + ".new");
        if (broken == "link") fs::rename(place.path + ".new", place.path);
        const auto defaults = place.defaults();
        EXPECT_EQ(place.read(), broken);
        defaults.setFlag("Flag");
        EXPECT_EQ(place.read(".broken"), broken);
        EXPECT_TRUE(place.defaults().flag("Flag"));
        EXPECT_FALSE(fs::is_symlink(place.path));
    }
}

TEST(DefaultsFile, keepsAFlagThatItCannotWrite) {
    Place place;
    place.folder.write("tarnik", "a file instead of a folder");
    const auto defaults = place.defaults();
    defaults.setFlag("Flag");
    EXPECT_TRUE(defaults.flag("Flag"));
    EXPECT_EQ(place.logged.size(), 1U);
}

}  // namespace
}  // namespace tarnik
