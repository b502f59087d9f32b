#include "app/model/BuildSettings.h"

#include <gtest/gtest.h>

#include "tests/support/PropertyLists.h"

namespace tarnik {
namespace {

TEST(BuildSettings, areOnlyWhatIsWrittenAsItHasToBe) {
    const auto with = [](const std::string& key, const std::string& value) {
        return BuildSettings::fromPropertyList(
            propertyLists::xml("<dict><key>" + key + "</key>" + value + "</dict>"));
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
    EXPECT_EQ(BuildSettings::fromPropertyList("").webOrigin.text(), standard);
}

}  // namespace
}  // namespace tarnik
