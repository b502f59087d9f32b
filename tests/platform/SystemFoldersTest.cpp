#include "app/platform/SystemFolders.h"

#include <gtest/gtest.h>

namespace tarnik {

TEST(SystemFolders, areTheAbsoluteXdgFoldersOrTheirDefaults) {
    const std::pair<Environment, std::string> cases[] = {
        {{}, "/home/ada/.config"},
        {{{"XDG_CONFIG_HOME", "/elsewhere//"}}, "/elsewhere"},
        {{{"XDG_CONFIG_HOME", "relative"}}, "/home/ada/.config"},
        {{{"XDG_CONFIG_HOME", ""}}, "/home/ada/.config"},
    };
    for (const auto& [environment, preferences] : cases)
        EXPECT_EQ(SystemFolders::of(environment, "/home/ada").preferences, preferences);
}

}  // namespace tarnik
