#include "app/updates/Updater.h"

#include <gtest/gtest.h>

#include "tests/support/ManualMainThread.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

const std::string ready = "update 1.2 is ready; installing at the first quiet moment";
const std::string quiet = "quiet for 600 s: installing the update and relaunching";
const std::string byMenu = "Check for Updates… with an update waiting: installing it now";

// An updater with a fake framework and a fake source of samples.
struct Fixture {
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualMainThread main{clock};
    bool busy = false;
    bool slow = false;  // samples wait for deliver()
    std::vector<std::function<void()>> undelivered;
    int looks = 0;
    UpdateFramework::WillInstallOnQuit willInstall;
    Words calls;  // log lines, and calls of the framework
    std::unique_ptr<Updater> updater;

    explicit Fixture(const UpdateSettings& settings = {"https://feed/", "key"}) {
        const auto records = [this](const char* word) { return [this, word] { calls.emplace_back(word); }; };
        const auto make = [this, records](auto handler) -> UpdateFramework::Controller {
            willInstall = handler;
            return {records("start"), records("checks"), records("downloads"), records("check")};
        };
        const auto log = [this](const auto& line) { calls.push_back(line); };
        const auto now = [this] { return clock->now(); };
        updater = std::make_unique<Updater>(settings, Updater::Deps{{make}, main.record(), log, now});
        updater->setSampleSource([this](auto done) {
            ++looks;
            const ActivitySample sample{.at = {clock->now(), {}}, .nodeHoldsAwake = busy};
            undelivered.emplace_back([done, sample] { done(sample); });
            if (!slow) deliver();
        });
    }

    void deliver() {
        for (const auto& sample : std::exchange(undelivered, {})) sample();
    }
    bool announce(const std::string& name = "install") {
        return willInstall("1.2", [this, name] { calls.push_back(name); });
    }
    // Returns the calls since the last time.
    Words takeCalls() { return std::exchange(calls, {}); }
};

TEST(Updater, doesNothingWithoutCompleteSettings) {
    for (const auto& settings : {UpdateSettings{"https://feed/", {}}, UpdateSettings{{}, "key"}}) {
        Fixture f(settings);
        EXPECT_FALSE(f.updater->isAvailable());
        f.main.advance(1h);
        f.updater->checkForUpdates();
        f.updater->appWillQuit();
        EXPECT_EQ(f.takeCalls(), Words{});
        EXPECT_EQ(f.looks, 0);
    }
    EXPECT_FALSE(Updater({"https://feed/", "key"}, {}).isAvailable()) << "a system without a framework";
}

TEST(Updater, samplesEveryMinuteAndChecksOnRequest) {
    Fixture f;
    EXPECT_TRUE(f.updater->isAvailable());
    f.updater->checkForUpdates();
    f.main.advance(1h);
    EXPECT_EQ(f.looks, 60);
    EXPECT_EQ(f.takeCalls(), (Words{"start", "checks", "downloads", "check"}));

    f.busy = true;
    f.announce();
    f.main.advance(1h);
    f.updater->checkForUpdates();
    f.updater->checkForUpdates();
    EXPECT_EQ(f.takeCalls(), (Words{ready, byMenu, "install", "check"}));
}

TEST(Updater, leavesAnUpdateToTheFrameworkAtQuit) {
    Fixture f;
    f.announce();
    f.main.advance(610s);
    f.slow = true;
    f.main.advance(60s);
    f.takeCalls();
    f.updater->appWillQuit();
    EXPECT_EQ(f.takeCalls(), Words{"quitting with an update ready: it installs as the app quits"});
    f.deliver();
    f.main.advance(1h);
    f.updater->checkForUpdates();
    f.updater->appWillQuit();
    EXPECT_TRUE(f.announce());
    EXPECT_EQ(f.takeCalls(), Words{ready}) << "not installed by the updater";
    EXPECT_EQ(f.looks, 11);
}

TEST(Updater, samplesAgainAfterALostSample) {
    Fixture f;
    f.announce();
    f.main.advance(5min);
    f.slow = true;
    f.main.advance(5min);
    EXPECT_EQ(f.looks, 6) << "one at a time";
    f.main.advance(1min);
    EXPECT_EQ(f.looks, 7);
    f.slow = false;
    f.deliver();  // a late sample, and the first one of the new stretch
    f.main.advance(9min);
    EXPECT_EQ(f.takeCalls().back(), ready);
    f.main.advance(1min);
    EXPECT_EQ(f.takeCalls(), (Words{quiet, "install"}));
}

TEST(Updater, ignoresAnswersAfterItsEnd) {
    Fixture f;
    f.slow = true;
    f.main.advance(1min);
    f.takeCalls();
    f.willInstall("1.2", [&f] { f.updater.reset(); });
    f.updater->checkForUpdates();
    f.deliver();
    EXPECT_FALSE(f.announce());
    f.main.advance(1h);
    EXPECT_EQ(f.takeCalls(), (Words{ready, byMenu}));
}

}  // namespace
}  // namespace tarnik
