#include "core/relocation/Relocation.h"

#include <tuple>

#include <gtest/gtest.h>

#include "app/texts/RelocationTexts.h"
#include "core/relocation/RecordLine.h"
#include "core/relocation/Takeover.h"
#include "core/relocation/VersionOrder.h"

namespace tarnik::Relocation {
namespace {

using namespace Decisions;

const std::string installed = "/Applications/tarnik.app";
const Launch fromDownloads{.bundlePath = "/Users/me/Downloads/tarnik.app"};
const Launch fromInstalled{.bundlePath = installed};

Launch translocated(std::optional<std::string> original) {
    return {.bundlePath = "/private/T/d/tarnik.app", .isTranslocated = true, .originalPath = original};
}

Launch relaunched(Launch launch) {
    launch.isRelaunch = true;
    return launch;
}

TEST(VersionOrder, readsRunsOfDigitsAsNumbers) {
    const std::string digits(400, '9');
    // Each is older than the next.
    const std::string ascending[] = {"",       "1",          "1.9",       "1.10",  "1.10-beta",
                                     "1.10.0", "2026.1.2",   "2026.1.10", "9999",  "10000",
                                     digits,   "1" + digits, "v1.9",      "v1.10", "é"};
    for (const auto& a : ascending)
        for (const auto& b : ascending) EXPECT_EQ(compareVersions(a, b), &a <=> &b) << a << " " << b;
    EXPECT_EQ(compareVersions("1.01.0", "1.1.000"), std::weak_ordering::equivalent);
    EXPECT_EQ(compareVersions("1.010", "1.9"), std::weak_ordering::greater);
}

TEST(Relocation, decidesByPlaceVersionsAndWhatItMayWrite) {
    const Launch ofInstalled = translocated(installed);
    const std::tuple<const char*, Facts, Decision> cases[] = {
        {"the installed copy", {fromInstalled, "9", "1", true}, Stay{}},
        {"the installed copy, not standardized",
         {{"/Applications/x/..//tarnik.app/"}, {}, "1", true},
         Stay{}},
        {"a development build", {fromDownloads, {}, "1", true, true}, Stay{}},
        {"nothing installed", {fromDownloads, {}, "1", true}, Install{.replacing = false}},
        {"nothing installed, no right to", {fromDownloads, {}, "1", false}, CannotInstall{}},
        {"an older one installed", {fromDownloads, "1.9", "1.10", true}, Install{.replacing = true}},
        {"an older one installed, no right to", {fromDownloads, "1.9", "1.10", false}, CannotInstall{}},
        {"the same one installed", {fromDownloads, "1.9", "1.9", false}, OpenInstalled{}},
        {"a newer one installed", {fromDownloads, "1.10", "1.9", true}, OpenInstalled{}},
        {"the installed one, translocated", {ofInstalled, "1", "1", false}, OpenInstalled{}},
        {"translocated from nobody knows where", {translocated({}), {}, "1", true}, Install{}},
        {"translocated, as if installed",
         {{.bundlePath = installed, .isTranslocated = true}, {}, "1", true},
         OpenInstalled{}},
        {"an original that doesn't count",
         {{fromDownloads.bundlePath, false, installed}, {}, "1", true},
         Install{}},
        {"relaunched, would install", {relaunched(fromDownloads), {}, "1", true}, RunHere{}},
        {"relaunched, would open", {relaunched(ofInstalled), "1", "1", true}, RunHere{}},
        {"relaunched, no right to", {relaunched(fromDownloads), {}, "1", false}, CannotInstall{}},
        {"relaunched as meant", {relaunched(fromInstalled), "1", "1", true}, Stay{}},
    };
    for (const auto& [why, facts, decision] : cases) EXPECT_EQ(decide(facts), decision) << why;
}

TEST(RelocationTexts, nameTheFolderOfTheUsersCopy) {
    for (const auto& [message, place] :
         {std::pair(differentBuildMessage(translocated("/Volumes/tarnik/tarnik.app/")), "“/Volumes/tarnik”"),
          {takeoverStuckMessage(fromDownloads), "“/Users/me/Downloads”"},
          {runHereMessage(fromDownloads), "“/Users/me/Downloads”"},
          {runHereMessage(translocated(installed)), "from Applications to your Desktop"}})
        EXPECT_TRUE(message.body.contains(place)) << message.body;
}

TEST(RecordLine, isOneLineOfTabbedFields) {
    const RecordTime at(std::chrono::milliseconds(1'772'373'909'999));
    EXPECT_EQ(recordLine(relaunched(translocated("/a\tb\n%")), Takeover{}, true, {"one=1", "two=\x7F"}, at),
              "2026-03-01T14:05:09Z\ttranslocated=true\toriginal=/a%09b%0A%\there=/private/T/d/tarnik.app\t"
              "relaunch=true\tdecision=takeover\tcleared=true\tone=1\ttwo=%7F");
}

}  // namespace
}  // namespace tarnik::Relocation
