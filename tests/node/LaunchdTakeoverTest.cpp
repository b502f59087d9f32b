#include "core/node/LaunchdTakeover.h"

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

// "/link" is a link to the volume with the user's home.
std::string throughLinks(const std::string& path) {
    return "/real" + (path.starts_with("/link/") ? path.substr(5) : path);
}

std::string agent(const std::string& body, const std::string& label = "<string>com.tarnik.node</string>") {
    return xml("<dict><key>Label</key>" + label + body + "</dict>");
}

std::string runningIn(const std::string& folder) {
    return "<key>EnvironmentVariables</key><dict><key>OPENCLAW_STATE_DIR</key><string>" + folder +
           "</string></dict>";
}

std::string starting(const std::string& program) {
    return "<key>ProgramArguments</key><array><integer>1</integer><string>-x</string><string>" + program +
           "</string></array>";
}

TEST(LaunchdTakeover, takesOverOnlyAgentsOfThisNodeHome) {
    const std::string node = "/link/Users/me/.tarnik/node/runtime/node/bin/node";
    const std::string script = "/Users/me/.tarnik/node/service-env/run.sh";
    const std::string startsNode = starting(node);
    const std::string binaryAgent = binary({binaryDictionary({1, 2, 3, 4}), binaryText("Label"),
                                            binaryText("ProgramArguments"), binaryText("com.tarnik.node"),
                                            binaryArray({5, 6}), binaryText("/bin/sh"), binaryText(script)});
    const std::pair<Plan, std::optional<std::string>> cases[] = {
        {Nothing{}, std::nullopt},
        {unreadable, agent(startsNode).substr(0, agent(startsNode).rfind("</plist>"))},
        {unreadable, xml("<array><dict/></array>")},
        {notTarniks, xml("<dict>" + startsNode + "</dict>")},
        {notTarniks, agent(startsNode, "<true/>")},
        {notTarniks, agent(startsNode, "<string>com.tarnik.node.dev</string>")},
        {ours, agent(runningIn("/link/Users/me/.tarnik/node"))},
        // An absolute state folder decides, whatever the program.
        {elsewhere, agent(runningIn("/Users/me/.tarnik") + startsNode)},
        {ours, agent(runningIn(".tarnik/node") + startsNode)},
        {ours, agent("<key>EnvironmentVariables</key><string/>" + startsNode)},
        {ours, agent("<key>Program</key><string>" + node + "</string>")},
        {ours, agent(starting(script))},
        {elsewhere, agent(starting("/Users/me/.tarnik/node/service-env2/x"))},
        {elsewhere, agent(starting(node + "2"))},
        {elsewhere, agent(starting(node.substr(1)))},
        {ours, binaryAgent},
    };
    for (const auto& [expected, plist] : cases)
        EXPECT_EQ(plan(plist, agentPath, home, 501, throughLinks), expected) << plist.value_or("none");
    EXPECT_EQ(agentPath, "/Users/me/Library/LaunchAgents/com.tarnik.node.plist");
}

TEST(LaunchdTakeover, stopsTheAgentAndDeletesItsFile) {
    struct Case {
        ExitStatus bootout, print;
        Outcome outcome;
    };
    for (const Case& c : {Case{ExitStatus::exited(0), ExitStatus::exited(113), {true, true}},
                          {ExitStatus::exited(5), ExitStatus::exited(0), {false, true}},
                          {ExitStatus::exited(0), ExitStatus::signaled(9), {true, false}}}) {
        std::string steps;
        const auto launchctl = [&](const std::vector<std::string>& arguments) {
            steps += arguments.at(0) + " " + arguments.at(1) + ", ";
            return arguments.at(0) == "print" ? c.print : c.bootout;
        };
        const auto removeFile = [&](const std::string& path) {
            steps += path;
            return c.outcome.removed;
        };
        const Deps deps{launchctl, removeFile};
        for (const auto& idle : {elsewhere, Plan(Nothing{})}) EXPECT_EQ(execute(idle, deps), std::nullopt);
        EXPECT_EQ(execute(ours, deps), c.outcome);
        EXPECT_EQ(steps, "bootout gui/501/com.tarnik.node, print gui/501/com.tarnik.node, " + agentPath);
    }
    const TemporaryFolder folder;
    const std::string file = folder.write("agent", "");
    EXPECT_TRUE(Deps::production().removeFile(file));
    EXPECT_FALSE(Deps::production().removeFile(file));
}

}  // namespace
}  // namespace tarnik::LaunchdTakeover
