#include "app/platform/linux/DefaultsFile.h"

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
    EXPECT_EQ(fs::status(place.path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(DefaultsFile, renamesAnUnreadableFile) {
    for (const std::string& broken : {std::string("{\"a\": tru"), std::string("[]"), std::string(),
                                      "{\"a\": \"" + std::string(DefaultsFile::maxBytes, 'x') + "\"}"}) {
        Place place;
        place.write(broken);
        const auto defaults = place.defaults();
        EXPECT_EQ(place.read(), broken);
        defaults.setFlag("Flag");
        EXPECT_EQ(place.read(".broken"), broken);
        EXPECT_TRUE(place.defaults().flag("Flag"));
    }
}

TEST(DefaultsFile, followsNoLink) {
    Place place;
    place.write("");
    const std::string target = place.folder.write("target", R"({"Flag": true})");
    fs::remove(place.path);
    fs::create_symlink(target, place.path);
    const auto defaults = place.defaults();
    EXPECT_FALSE(defaults.flag("Flag"));
    defaults.setFlag("Other");
    EXPECT_TRUE(fs::is_symlink(place.path + ".broken"));
    EXPECT_EQ(place.read(".broken"), R"({"Flag": true})");
    EXPECT_TRUE(place.defaults().flag("Other"));
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
