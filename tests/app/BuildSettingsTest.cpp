#include "app/model/BuildSettings.h"

#include <array>

#include <gtest/gtest.h>

#include "tests/support/PropertyLists.h"

namespace tarnik {
namespace {

// Origin, base, key and oldest version in one line.
std::string summary(const BuildSettings& settings) {
    return settings.webOrigin.text() + " " +
           (settings.nodeReleaseBase ? settings.nodeReleaseBase->text() : "-") + " " +
           settings.nodeReleasePublicKey.value_or("-") + " " + settings.nodeMinVersion.value_or("-");
}

TEST(BuildSettings, takesTextsThatAreNotEmpty) {
    const std::string standard = TARNIK_DEFAULT_WEB_ORIGIN " - - -";
    // Values of the four keys, and what is made of them.
    const std::pair<std::array<std::string, 4>, std::string> cases[] = {
        {{"<string>http://localhost:1</string>", "<string>https://b/x/</string>", "<string>k</string>",
          "<string>2026.4.9</string>"},
         "http://localhost:1 https://b/x/ k 2026.4.9"},
        {{"<string></string>", "<string/>", "<string/>", "<string/>"}, standard},
        {{"<true/>", "<array><string>https://b</string></array>", "<data>AAAA</data>",
          "<integer>1</integer>"},
         standard},
        {{"<string>not an address</string>", "<string>b/x</string>", "<true/>", "<true/>"}, standard},
        {{"<string>https:///c</string>", "<string>https:b</string>", "<true/>", "<true/>"}, standard},
    };
    for (const auto& [values, expected] : cases) {
        const std::string info =
            propertyLists::xml("<dict><key>TKWebOrigin</key>" + values[0] + "<key>TKNodeReleaseBase</key>" +
                               values[1] + "<key>TKNodeReleasePublicKey</key>" + values[2] +
                               "<key>TKNodeMinVersion</key>" + values[3] + "</dict>");
        EXPECT_EQ(summary(BuildSettings::fromPropertyList(info)), expected) << values[0];
    }
    EXPECT_EQ(summary(BuildSettings::fromPropertyList("")), standard);
}

}  // namespace
}  // namespace tarnik
