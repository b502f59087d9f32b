#include "app/relocation/Relocator.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "app/bundle/BundleInfo.h"
#include "app/relocation/RelaunchCommand.h"
#include "app/relocation/RelocationRun.h"
#include "core/process/Spawner.h"
#include "core/relocation/Relocation.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeMac.h"
#include "tests/support/ForkedChild.h"
#include "tests/support/ManualMainThread.h"
#include "tests/support/Shell.h"

namespace tarnik {
namespace {

using namespace RelocationOutcomes;
namespace fs = std::filesystem;

constexpr const char* place = "/Applications/tarnik.app";
constexpr const char* download = "/Downloads/tarnik.app";
constexpr const char* record = "/Support/tarnik/relocation.log";

// A downloaded copy of version 2 was opened. Another version may be installed in Applications.
struct Downloaded : FakeMac {
    explicit Downloaded(const std::string& version = "") {
        own.bundlePath = bundle(download, "2");
        if (!version.empty()) bundle(place, version);
    }
};

// Returns the record from its last decision on, with spaces for tabs.
std::string lastDecision(const FakeMac& mac) {
    std::string text = mac.read(record);
    std::ranges::replace(text, '\t', ' ');
    return text.substr(std::min(text.size(), text.rfind("decision=") + 9));
}

// Returns "stay", "moving", or the beginning of the message's title.
std::string said(const RelocationOutcome& outcome) {
    const auto* message = std::get_if<StayWithMessage>(&outcome);
    return message                                   ? message->title.substr(0, 8)
           : std::holds_alternative<Moving>(outcome) ? "moving"
                                                     : "stay";
}
const std::string moving = "moving", moveIt = "Move tar", different = "This is ", stuck = "The olde";

TEST(Relocator, movesADownloadedCopyAndOpensIt) {
    Downloaded mac;
    EXPECT_EQ(mac.launch(), RelocationOutcome(Moving{}));
    EXPECT_EQ(mac.versionAt(place), "2");
    EXPECT_EQ(mac.calls, (std::vector{"open " + mac.installed, "trash " + mac.at(download)}));
    EXPECT_EQ(mac.versionAt("/Trash/tarnik.app"), "2");
    EXPECT_EQ(mac.entries("/Applications"), std::set<std::string>{"tarnik.app"});
    EXPECT_EQ(mac.read(record),
              "1970-01-01T00:00:00Z\ttranslocated=false\toriginal=-\there=" + mac.at(download) +
                  "\trelaunch=false\tdecision=install\tcleared=true\tentriesCleared=3\ttrash=done\n");

    mac.own = {.bundlePath = mac.installed, .arguments = {"tarnik", "--tarnik-relocation-relaunch"}};
    EXPECT_EQ(mac.launch(), RelocationOutcome(Stay{}));
    EXPECT_EQ(lastDecision(mac), "stay cleared=true entriesCleared=0\n");
    Relocator(mac.deps()).recordWindow("second\nOpen");
    EXPECT_TRUE(mac.read(record).ends_with("\n1970-01-01T00:00:00Z\twindow=opened\treason=second%0AOpen\n"));
}

TEST(Relocator, leavesWholeBundlesInEveryCase) {
    struct Case {
        std::string installed, script, outcome, after, decision;  // the versions before and after
        bool trashed = false;
    };
    const std::string lock = "touch Applications/locked", app = "Applications/tarnik.app/Contents/";
    const std::string forge = "touch " + app + "forged", unsign = "rm " + app + "team";
    const std::string foreign = "echo X > " + app + "team";
    const std::string adHoc = "for i in */*.app; do : > $i/Contents/team; done";
    const std::string meanwhile =
        "echo 'cd Applications; rm -r *; cp -a ../Downloads/* .; rm */*/team' > before-exchange";
    const auto failing = [](const std::string& name) { return "echo false > before-" + name; };
    const auto whenCopied = [](const std::string& change) { return "echo '" + change + "' > before-copy"; };
    const Case cases[] = {
        {"1.10", "", moving, "2", "installReplacing cleared=true entriesCleared=3 trash=done", true},
        {"10", "", moving, "10", "openInstalled cleared=true entriesCleared=3\n"},
        {"1", foreign, different, "1", "installReplacing installed=notOurs"},
        {"3", unsign, different, "broken", "openInstalled installed=notOurs"},
        {"3", forge, different, "3", "openInstalled installed=notOurs"},
        {"1", adHoc, moving, "2", "installReplacing cleared=true", true},
        {"1", lock, moveIt, "1", "cannotInstall\n"},
        {"", failing("copy"), moveIt, "", "install failed=copy: copy failed: "},
        {"1", whenCopied("sed -i.old s/2/3/ Down*/*/*/Info.plist"), moveIt, "1",
         "installReplacing failed=check"},
        {"", whenCopied("touch Downloads/tarnik.app/Contents/forged"), moveIt, "", "install failed=check"},
        {"1", failing("exchange"), moveIt, "1", "installReplacing failed=exchange: "},
        {"1", meanwhile, moveIt, "broken", "installReplacing failed=another was installed"},
        {"", failing("move"), moveIt, "", "install failed=move: "},
        {"", "mkdir Applications/tarnik.app", moveIt, "broken", "install failed=move: "},
        {"1", failing("clear-tarnik"), moving, "2",
         "installReplacing cleared=false entriesCleared=2 entriesFailed=1 firstError=clear-tarnik", true},
        {"", failing("spawn"), moveIt, "2", "install cleared=true entriesCleared=3 failed=spawn failed: "},
        {"", failing("trash"), moving, "2", "install cleared=true entriesCleared=3 trash=trash failed: "},
        {"", "touch Downloads/locked", moving, "2", "install cleared=true entriesCleared=3 trash=readOnly"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.decision + " | " + c.script);
        Downloaded mac(c.installed);
        shell(mac.at("/"), c.script);
        EXPECT_EQ(said(mac.launch()), c.outcome);
        EXPECT_EQ(mac.versionAt(place), c.after);
        EXPECT_TRUE(lastDecision(mac).starts_with(c.decision)) << lastDecision(mac);
        EXPECT_EQ(mac.versionAt(download).empty(), c.trashed);
        for (const auto& entry : mac.entries("/Applications")) EXPECT_FALSE(entry.starts_with('.')) << entry;
    }
}

TEST(Relocator, findsTheOriginalOfATranslocatedCopy) {
    struct Case {
        std::optional<std::string> original;
        std::string installed, outcome, decision;
        std::vector<std::string> arguments;
    };
    const Case cases[] = {
        {{}, "", moving, "install cleared=true entriesCleared=3 trash=unknown"},
        {download, "", moving, "install cleared=true entriesCleared=3 trash=done"},
        {"/other.app", "", moving, "install cleared=true entriesCleared=3 trash=changed"},
        {place, "2", moving, "openInstalled cleared=true"},
        {place, "2", "tarnik i", "runHere", {"--tarnik-relocation-relaunch"}},
    };
    for (const auto& c : cases) {
        Downloaded mac(c.installed);
        mac.bundle("/other.app", "3");
        mac.own = {mac.bundle("/translocated.app", "2"), true, c.original, c.arguments};
        if (c.original) mac.own.originalPath = mac.at(*c.original);
        EXPECT_EQ(said(mac.launch()), c.outcome) << c.decision;
        EXPECT_TRUE(lastDecision(mac).starts_with(c.decision)) << lastDecision(mac);
    }
}

TEST(Relocator, neverMovesADevelopmentBuild) {
    Downloaded mac("1");
    mac.others = {{.pid = 7, .bundlePath = mac.installed}};
    auto deps = mac.deps();
    deps.isDevelopmentBuild = true;
    EXPECT_EQ(FakeMac::launch(deps), RelocationOutcome(Stay{}));
    EXPECT_EQ(mac.calls, std::vector<std::string>());
    EXPECT_TRUE(mac.isQuarantined(place));
    deps.bundles.ownCopy = nullptr;  // as on a system where applications aren't moved
    EXPECT_EQ(FakeMac::launch(deps), RelocationOutcome(Stay{}));
    EXPECT_EQ(lastDecision(mac), "stay\n");
}

TEST(Relocator, endsOrActivatesRunningCopies) {
    struct Case {
        std::vector<std::string> running;  // versions
        std::string quitsOn, outcome;
        std::vector<std::string> calls;
        std::string record;
        double slept = 0;
    };
    const std::string ask = "terminate 70", force = "force 70",
                      older = "decision=takeover\trunning=/1.app\tresult=";
    const Case cases[] = {
        {{"2"}, "", moving, {"showWindow", "activate 70"}, "decision=stay\tactivated=/2.app\n"},
        {{"1", "3"}, "", moving, {"showWindow", "activate 71"}, "decision=stay\tactivated=/3.app\n"},
        {{"1"}, "terminate", "stay", {ask}, older + "quitGracefully\n"},
        {{"1"}, "force", "stay", {ask, force}, older + "neededForce\n", 30},
        {{"1"}, "", stuck, {ask, force}, older + "stillRunning\n", 35},
        {{"1-foreign"}, "", different, {}, "running=/1-foreign.app\tresult=notOurs\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.record);
        FakeMac mac;
        mac.own.bundlePath = mac.bundle(place, "2");
        for (int pid = 70; const auto& version : c.running)
            mac.others.push_back({.pid = pid++, .bundlePath = mac.bundle("/" + version + ".app", version)});
        shell(mac.at("/"), "if [ -d 1-foreign.app ]; then echo X > 1-foreign.app/Contents/team; fi");
        mac.quitsOn = c.quitsOn;
        EXPECT_EQ(said(mac.launch()), c.outcome);
        EXPECT_EQ(mac.calls, c.calls);
        EXPECT_NEAR(mac.slept.count(), c.slept, 0.2);
        std::string written = mac.read(record);
        for (auto at = written.find(mac.at("")); at != written.npos; at = written.find(mac.at("")))
            written.erase(at, mac.at("").size());
        EXPECT_TRUE(written.contains(c.record)) << written;
    }
}

TEST(Relocator, decidesAgainAfterAnOlderCopyHasQuit) {
    Downloaded mac("1");
    mac.others = {{.pid = 70, .bundlePath = mac.installed}};
    auto deps = mac.deps();
    deps.bundles.others.terminate = [&](const OtherCopy&) {  // it installs its waiting update
        mac.others.clear();
        fs::remove_all(mac.installed);
        mac.bundle(place, "3");
    };
    EXPECT_EQ(FakeMac::launch(deps), RelocationOutcome(Moving{}));
    EXPECT_EQ(mac.versionAt(place), "3");
}

TEST(Relocator, removesTheLeftoversOfEndedProcesses) {
    Downloaded mac("2");
    const pid_t dead = ForkedChild::waiting().pid();
    const ForkedChild alive = ForkedChild::waiting();
    const auto staged = [](pid_t pid) { return ".tarnik-moving-" + std::to_string(pid) + ".app"; };
    const std::set<std::string> kept{staged(alive.pid()), ".tarnik-moving-01.app", staged(-7), "x"};
    for (const auto& name : kept) mac.bundle("/Applications/" + name, "1");
    for (const pid_t pid : {dead, ::getpid()}) mac.bundle("/Applications/" + staged(pid), "1");
    mac.launch();
    auto left = kept;
    left.insert("tarnik.app");
    EXPECT_EQ(mac.entries("/Applications"), left);
}

TEST(Relocator, killedAnywhereLeavesWholeBundlesAndHealsNextTime) {
    for (const std::string before : {"", "1"}) {
        bool finished = false;
        for (int steps = 0; !finished; ++steps) {
            SCOPED_TRACE(before + " killed after " + std::to_string(steps));
            Downloaded mac(before);
            const pid_t child = ::fork();
            if (child == 0) {
                mac.step = [left = steps]() mutable { left-- == 0 ? ::_exit(1) : void(); };
                mac.launch();
                ::_exit(0);
            }
            int status = 0;
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            finished = status == 0;
            const std::string found = mac.versionAt(place);
            EXPECT_TRUE(found == before || found == "2") << found;
            const std::string original = mac.versionAt(download);
            EXPECT_TRUE(original == "2" || (original.empty() && found == "2")) << original;

            if (original.empty()) mac.own.bundlePath = mac.installed;
            mac.launch();
            EXPECT_EQ(mac.versionAt(place), "2");
            EXPECT_EQ(mac.entries("/Applications"), std::set<std::string>{"tarnik.app"});
            EXPECT_FALSE(mac.isQuarantined(std::string(place) + "/Contents/MacOS"));
            ASSERT_LT(steps, 100);
        }
    }
}

// The current step is completed, and no other one starts.
TEST(Relocator, startsNoStepAfterTheProgramQuits) {
    struct Case {
        std::string installed, quitsIn, left;
    };
    for (const auto& c : {Case{"", "", ""}, {"", "copy", ""}, {"1", "exchange", "2"}}) {
        SCOPED_TRACE(c.installed + " quits in " + c.quitsIn);
        Downloaded mac(c.installed);
        bool quits = c.quitsIn.empty();
        const auto quitting = [&quits](auto operation) {
            return [&quits, operation](const auto&... paths) {
                quits = true;
                return operation(paths...);
            };
        };
        auto deps = mac.deps();
        auto& files = deps.bundles.files;
        if (c.quitsIn == "copy") files.copy = quitting(files.copy);
        if (c.quitsIn == "exchange") files.exchange = quitting(files.exchange);
        RelocationRun(deps, RelocationRecord(mac.at("/Support")), [&quits] { return quits; }).perform();
        EXPECT_EQ(mac.versionAt(place), c.left);
        EXPECT_EQ(mac.versionAt(download), "2");
        EXPECT_EQ(mac.calls, std::vector<std::string>());
        EXPECT_EQ(mac.read(record).contains("failed=quit"), c.quitsIn == "copy");
    }
}

TEST(Relocator, endsItsWaitForAnOlderCopyAtOnce) {
    Downloaded mac("1");
    mac.others = {{.pid = 70, .bundlePath = mac.installed}};
    auto deps = mac.deps();
    ManualMainThread mainThread;
    deps.mainThread = mainThread.record();
    deps.makeQueue = SerialQueue::withThread;
    deps.sleep = InterruptibleSleep::production();
    std::atomic<bool> asked = false;
    deps.bundles.others.terminate = [&](const OtherCopy&) { asked = true; };
    const TimePoint start = steadyNow();
    {
        Relocator relocator(deps);
        relocator.relocateIfNeeded([](const RelocationOutcome&) { ADD_FAILURE() << "too late"; });
        EXPECT_TRUE(eventually([&] { return asked.load(); }));
    }
    mainThread.run();
    EXPECT_LT(steadyNow() - start, Seconds(15));
    EXPECT_EQ(mac.calls, std::vector<std::string>());
}

TEST(RelocationRecord, isPrivateAndBounded) {
    const FakeMac mac;
    const RelocationRecord log(mac.at("/Support"));
    const auto mode = [&](const std::string& path) { return fs::status(mac.at(path)).permissions(); };
    shell(mac.at("/"), "umask 0; mkdir -p Support/tarnik; : > Support/tarnik/relocation.log");
    const std::string line(999, 'x');
    for (int i = 100; i < 165; ++i) log.append(line + std::to_string(i));
    EXPECT_EQ(mode("/Support/tarnik"), fs::perms(0700));
    EXPECT_EQ(mode(record), fs::perms(0600));
    EXPECT_EQ(mac.read(record).size(), 65U * 1003);
    log.append(line + "165");
    log.append(std::string(40'000, 'y'));
    EXPECT_EQ(mac.read(record).size(), 33U * 1003);
    EXPECT_TRUE(mac.read(record).starts_with(line + "133\n") && mac.read(record).ends_with(line + "165\n"));
    EXPECT_EQ(mode(record), fs::perms(0600));
}

TEST(HandedLink, isPrivateAndUsedOnceWithinTenMinutes) {
    FakeMac mac;
    const HandedLink link(mac.at("/Support"));
    const std::string text = "tarnik://connect?code=x y";
    const auto at = [](int second) { return Relocation::RecordTime(std::chrono::seconds(second)); };
    for (const int later : {-1, 0, 600, 601}) {
        link.put(text, at(50));
        EXPECT_EQ(fs::status(mac.at("/Support/tarnik/link")).permissions(), fs::perms(0600));
        EXPECT_EQ(link.take(at(50 + later)).has_value(), later == 0 || later == 600) << later;
        EXPECT_EQ(link.take(at(50)), std::nullopt) << "the link was used";
    }
    Relocator(mac.deps()).handLinkOn(text);
    EXPECT_EQ(Relocator(mac.deps()).takeHandedLink(), text);
}

// Replaces the system's `open` in the command by a program that records its arguments.
TEST(RelaunchCommand, opensTheBundleAfterTheOldProcess) {
    const TemporaryFolder folder;
    const std::string open = folder.path() + "/open";
    shell(folder.path(), "echo 'printf \"%s|\" \"$@\" > noted' > open");
    auto old = std::make_unique<ForkedChild>(ForkedChild::waiting());
    auto request = relaunchAfter(old->pid(), "/a \"b\"/$c `d`.app");
    auto& line = request.arguments.at(1);
    const auto at = line.find("exec /usr/bin/open");
    ASSERT_NE(at, std::string::npos);
    line.replace(at, 18, "cd " + folder.path() + "; exec /bin/sh " + open);

    const auto child = Spawner::spawn(request);
    ASSERT_TRUE(child);
    EXPECT_EQ((*child)->waitForExit(Seconds(0.1)), std::nullopt);
    old.reset();
    EXPECT_EQ((*child)->waitForExit(Seconds(20)), ExitStatus::exited(0));
    EXPECT_EQ(folder.read("noted"), "-n|/a \"b\"/$c `d`.app|--args|--tarnik-relocation-relaunch|");
}

}  // namespace
}  // namespace tarnik
