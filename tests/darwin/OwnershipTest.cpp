// Runs the sources that use Core Foundation. Each case must release all references that it owns, and no
// others.

#include <functional>

#include <gtest/gtest.h>

#include "app/platform/CfText.h"
#include "app/platform/StoredPreferences.h"
#include "app/platform/macos/MacOperations.h"
#include "tests/darwin/CountedObjects.h"

namespace tarnik {
namespace {

const std::string translocated = "/private/T/tarnik.app";
const UserDefaults defaults = storedPreferences({}, {});
const CodeSignatures signatures = macSignatures();

std::optional<std::string> originalOf(const std::string& bundle) {
    return macBundles(bundle).ownCopy().originalPath;
}

TEST(Ownership, releasesEveryReferenceOnce) {
    countedObjects::setPreference("NodeHome", "/node");
    const std::pair<const char*, std::function<bool()>> cases[] = {
        {"text", [] { return CfText::text(CfText::of("é").get()) == "é"; }},
        {"no UTF-8", [] { return !CfText::of("\xFF"); }},
        {"no text", [] { return !CfText::text(kCFBooleanTrue) && !CfText::text(nullptr); }},
        {"path", [] { return CfText::path(CfText::folderURL("/a").get()) == "/a"; }},
        {"no path", [] { return !CfText::path(CfText::folderURL("").get()); }},
        {"long path", [] { return !CfText::path(CfText::folderURL(std::string(9999, 'a')).get()); }},
        {"stored text", [] { return defaults.text("NodeHome") == "/node" && !defaults.text("absent"); }},
        {"no flag", [] { return !defaults.flag("NodeHome") && !defaults.flag("absent"); }},
        {"flag",
         [] {
             defaults.setFlag("on");
             const bool isOn = defaults.flag("on") && !defaults.text("on");
             defaults.clearFlag("on");
             return isOn && !defaults.flag("on");
         }},
        {"prompt", [] { return macSwitches().prompt(Switch::accessibility); }},
        {"team", [] { return signatures.teamIdentifier("/a.app") == "TEAM"; }},
        {"no team", [] { return signatures.teamIdentifier("/adhoc.app") == ""; }},
        {"no code", [] { return !signatures.teamIdentifier("/a") && !signatures.teamIdentifier(""); }},
        {"our team", [] { return signatures.satisfiesRequirement("/a.app", "TEAM"); }},
        {"another team", [] { return !signatures.satisfiesRequirement("/a.app", "OTHER"); }},
        {"a malformed team", [] { return !signatures.satisfiesRequirement("/a.app", "\" or \""); }},
        {"original", [] { return originalOf(translocated) == "/Downloads/tarnik.app"; }},
        {"lost original", [] { return !originalOf("/private/T/lost.app"); }},
        {"in place", [] { return !originalOf("/Applications/tarnik.app"); }},
    };
    for (const auto& [name, runs] : cases) {
        const int before = countedObjects::references();
        EXPECT_TRUE(runs()) << name;
        EXPECT_EQ(countedObjects::references(), before) << name;
    }
}

}  // namespace
}  // namespace tarnik
