#include "core/node/LaunchdTakeover.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/support/PropertyLists.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik::LaunchdTakeover {
namespace {

using namespace propertyLists;

const std::string agentPath = plistPath("/Users/me");
const NodeHome home{.path = "/Users/me/.tarnik/node", .isDefault = true};
const Plan ours = TakeOver{agentPath, "gui/501/com.tarnik.node"};
const Plan unreadable = LeaveAlone{"its LaunchAgent can't be read"};
const Plan notTarniks = LeaveAlone{"the LaunchAgent isn't tarnik's node"};
const Plan elsewhere = LeaveAlone{"the LaunchAgent runs another node folder"};

// "/link" is a link to the volume that the user's home lies on.
std::string throughLinks(const std::string& path) {
    return path.starts_with("/link/")    ? "/real" + path.substr(5)
           : path.starts_with("/Users/") ? "/real" + path
                                         : path;
}

Plan planOf(const std::optional<std::string>& plist) {
    return plan(plist, agentPath, home, 501, throughLinks);
}

std::string agent(const std::string& body, const std::string& label = "<string>com.tarnik.node</string>") {
    return xml("<dict><key>Label</key>" + label + body + "</dict>");
}

std::string runningIn(const std::string& folder) {
    return "<key>EnvironmentVariables</key><dict><key>OPENCLAW_STATE_DIR</key><string>" + folder +
           "</string></dict>";
}

std::string starting(const std::string& words) {
    return "<key>ProgramArguments</key><array>" + words + "</array>";
}

TEST(LaunchdTakeover, takesOverOnlyAgentsOfThisNodeHome) {
    const std::string node = "/link/Users/me/.tarnik/node/runtime/node/bin/node";
    const std::string script = "/Users/me/.tarnik/node/service-env/run.sh";
    const std::string startsNode =
        starting("<integer>1</integer><string>-x</string><string>" + node + "</string>");
    struct Case {
        const char* why;
        std::optional<std::string> plist;
        Plan plan;
    };
    const Case cases[] = {
        {"no file", std::nullopt, Nothing{}},
        {"an empty file", "", unreadable},
        {"no property list", "Label = com.tarnik.node", unreadable},
        {"an array at the top", xml("<array><dict/></array>"), unreadable},
        {"no label", xml("<dict>" + startsNode + "</dict>"), notTarniks},
        {"a label that is no text", agent(startsNode, "<true/>"), notTarniks},
        {"a longer label", agent(startsNode, "<string>com.tarnik.node.dev</string>"), notTarniks},
        {"nothing that it runs", agent(""), elsewhere},
        {"the state folder, through a link", agent(runningIn("/link/Users/me/.tarnik/node")), ours},
        {"another state folder, though our program", agent(runningIn("/Users/you/node") + startsNode),
         elsewhere},
        {"the state folder's parent", agent(runningIn("/Users/me/.tarnik") + startsNode), elsewhere},
        {"a relative state folder, and our program", agent(runningIn(".tarnik/node") + startsNode), ours},
        {"a relative state folder alone", agent(runningIn(".tarnik/node")), elsewhere},
        {"an environment of another kind", agent("<key>EnvironmentVariables</key><string/>" + startsNode),
         ours},
        {"arguments of another kind", agent("<key>ProgramArguments</key><string>" + node + "</string>"),
         elsewhere},
        {"the program alone", agent("<key>Program</key><string>" + node + "</string>"), ours},
        {"a script of the service folder", agent(starting("<string>" + script + "</string>")), ours},
        {"a folder named like it", agent(starting("<string>/Users/me/.tarnik/node/service-env2/x</string>")),
         elsewhere},
        {"a program named like it", agent(starting("<string>" + node + "2</string>")), elsewhere},
        {"a relative program", agent(starting("<string>" + node.substr(1) + "</string>")), elsewhere},
        {"binary",
         binary({binaryDictionary({1, 2, 3, 4}), binaryText("Label"), binaryText("ProgramArguments"),
                 binaryText("com.tarnik.node"), binaryArray({5, 6}), binaryText("/bin/sh"),
                 binaryText(script)}),
         ours},
    };
    for (const auto& c : cases) EXPECT_EQ(planOf(c.plist), c.plan) << c.why;
    EXPECT_EQ(agentPath, "/Users/me/Library/LaunchAgents/com.tarnik.node.plist");
}

TEST(LaunchdTakeover, stopsTheAgentAndDeletesItsFile) {
    struct Case {
        const char* why;
        ExitStatus bootout;
        ExitStatus print;
        bool removes;
        Outcome outcome;
    };
    const Case cases[] = {
        {"all goes well", ExitStatus::exited(0), ExitStatus::exited(113), true, {true, true}},
        {"it stays loaded", ExitStatus::exited(5), ExitStatus::exited(0), true, {false, true}},
        {"launchctl is killed", ExitStatus::exited(0), ExitStatus::signaled(9), true, {true, true}},
        {"the file stays", ExitStatus::exited(0), ExitStatus::exited(113), false, {true, false}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> steps;
        const Deps deps{.launchctl =
                            [&](const std::vector<std::string>& arguments) {
                                steps.push_back(arguments.at(0) + " " + arguments.at(1));
                                return arguments.at(0) == "print" ? c.print : c.bootout;
                            },
                        .removeFile =
                            [&](const std::string& path) {
                                steps.push_back(path);
                                return c.removes;
                            }};
        EXPECT_EQ(execute(ours, deps), c.outcome) << c.why;
        EXPECT_EQ(steps, (std::vector<std::string>{"bootout gui/501/com.tarnik.node",
                                                   "print gui/501/com.tarnik.node", agentPath}));
        steps.clear();
        EXPECT_EQ(execute(elsewhere, deps), std::nullopt);
        EXPECT_EQ(execute(Nothing{}, deps), std::nullopt);
        EXPECT_TRUE(steps.empty());
    }
}

TEST(LaunchdTakeover, deletesTheFileEvenWithoutLaunchctl) {
    if (std::filesystem::exists("/bin/launchctl")) GTEST_SKIP() << "launchctl is here";
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/agent.plist";
    std::ofstream(path) << "x";
    const TakeOver plan{path, "gui/501/com.tarnik.node"};
    EXPECT_EQ(execute(plan, Deps::production()), (Outcome{true, true}));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(execute(plan, Deps::production()), (Outcome{true, false}));
}

}  // namespace
}  // namespace tarnik::LaunchdTakeover
