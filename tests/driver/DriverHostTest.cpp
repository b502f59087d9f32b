#include "core/driver/DriverHost.h"

#include <csignal>
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "tests/support/ChildPrograms.h"
#include "tests/support/FakeChild.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Words.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Uses a manual clock. A driver is ready if `ready` is set; `whileWaiting` is called at each check before.
struct Fixture {
    ShortTemporaryFolder folder;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<ManualQueue> queue = std::make_shared<ManualQueue>(clock);
    FakeSpawner spawner;
    bool ready = true;
    std::function<void()> whileWaiting = [] {};
    std::vector<std::string> log;
    std::string events;  // "+" for a start, "-" for a stop
    std::vector<std::optional<CuaDriverEndpoint>> endpoints;
    DriverHost::Setup setup{.executable = "/driver",
                            .applicationSupport = folder.path(),
                            .hostBundleID = "app.tarnik",
                            .inherited = {{"PATH", "/bin"}}};
    DriverHostDeps deps = fakes();
    std::optional<DriverHost> made;

    DriverHostDeps fakes() {
        auto fakes = DriverHostDeps::production();
        fakes.launch = spawner.launchDriver();
        fakes.socketReady = [this](const std::string&) { return ready; };
        fakes.sleep = [this](Seconds time) {
            whileWaiting();
            clock->set(after(clock->now(), time));
        };
        fakes.now = [this] { return clock->now(); };
        fakes.onEvent = [this](const ChildEvent& event) {
            if (std::holds_alternative<ChildEvents::Started>(event)) events += '+';
            if (std::holds_alternative<ChildEvents::Stopped>(event)) events += '-';
        };
        fakes.makeQueue = [this](const std::string&) { return queue; };
        return fakes;
    }
    DriverHost& host() {
        if (!made) {
            made.emplace(
                setup, deps, [this](const std::string& text) { log.push_back(text); },
                [this](const auto& endpoint) { endpoints.push_back(endpoint); });
        }
        return *made;
    }
    void act(const std::string& event) {
        static const std::map<std::string, void (*)(Fixture&)> actions{
            {"on", [](auto& f) { f.host().setEnabled(true); }},
            {"off", [](auto& f) { f.host().setEnabled(false); }},
            {"change", [](auto& f) { f.host().permissionsChanged(); }},
            {"die", [](auto& f) { f.spawner.last().end(ExitStatus::signaled(SIGSEGV)); }},
            {"fail", [](auto& f) { f.spawner.failure = SystemError{"pipe", EMFILE}; }},
            {"no-driver", [](auto& f) { f.setup.executable.reset(); }},
            {"no-folder", [](auto& f) { f.setup.applicationSupport += "/a/b"; }},
        };
        if (event.starts_with('+')) return queue->advance(Seconds(std::stod(event)));
        actions.at(event)(*this);
    }
    std::size_t startsAfter(Seconds time) {
        queue->advance(time);
        return spawner.count();
    }
    std::size_t directories() const { return DriverSocketDirectory::owned(folder.path()).size(); }
};

TEST(DriverHost, publishesTheEndpointWhileTheDriverRuns) {
    Fixture f;
    for (int i = 0; i < 2; ++i) f.host().setEnabled(true);
    EXPECT_EQ(f.spawner.count(), 1U);
    const auto directory = DriverSocketDirectory::owned(f.folder.path()).at(0);
    const CuaDriverEndpoint endpoint{.socketPath = directory.socketPath, .binaryPath = "/driver"};
    EXPECT_EQ(f.host().currentEndpoint(), endpoint);
    EXPECT_EQ(f.spawner.last().request().arguments.at(5), endpoint.socketPath);
    EXPECT_EQ(f.host().runningPID(), f.spawner.last().handle()->pid());
    EXPECT_EQ(f.host().runningPID(), directory.readProcessIdentifier());

    f.host().shutdown();
    EXPECT_EQ(f.spawner.last().handle()->exitStatus(), ExitStatus::exited(0));
    EXPECT_EQ(f.spawner.last().stopping(), "") << "by the end of its input";
    EXPECT_FALSE(f.host().isRunning());
    EXPECT_EQ(f.endpoints, (std::vector<std::optional<CuaDriverEndpoint>>{endpoint, std::nullopt}));
    EXPECT_EQ(f.log, std::vector<std::string>{"desktop driver ready"});
    EXPECT_EQ(f.directories(), 0U);
}

TEST(DriverHost, retriesOncePerFailedStart) {
    using Spoil = std::function<void(Fixture&)>;
    const Spoil cannotStart = [](auto& f) { f.spawner.failure = SystemError{"posix_spawn /driver", EACCES}; };
    const Spoil ends = [](auto& f) {
        f.whileWaiting = [&f] { f.spawner.last().end(ExitStatus::exited(3)); };
    };
    const Spoil cannotWritePID = [](auto& f) {
        f.deps.launch = [&f, launch = f.deps.launch](const auto& recipe, int fd, auto onExit) {
            for (const auto& made : DriverSocketDirectory::owned(f.folder.path()))
                fs::create_directory(made.pidFilePath());
            return launch(recipe, fd, std::move(onExit));
        };
    };
    const std::tuple<const char*, Spoil, Seconds, std::size_t> cases[] = {
        {"the desktop driver didn't start: posix_spawn /driver failed: Permission denied", cannotStart, 0s,
         0},
        {"the desktop driver stopped before it was ready (exit 3)", ends, 0.05s, 0},
        {"the desktop driver didn't become ready in time", [](Fixture&) {}, 10.05s, 0},
        {"couldn't record the desktop driver's pid", cannotWritePID, 0s, 1},
    };
    for (const auto& [line, spoil, took, directoriesLeft] : cases) {
        SCOPED_TRACE(line);
        Fixture f;
        f.ready = false;
        spoil(f);
        const TimePoint start = f.clock->now();
        f.host().setEnabled(true);
        EXPECT_NEAR(Seconds(f.clock->now() - start).count(), took.count(), 0.01);
        EXPECT_FALSE(f.host().isRunning());
        EXPECT_EQ(f.directories(), directoriesLeft);
        EXPECT_TRUE(f.spawner.count() == 0 || !f.spawner.last().handle()->isRunning());
        f.queue->advance(0.9s);
        EXPECT_EQ(f.log, std::vector<std::string>{line});
        f.queue->advance(0.1s);
        EXPECT_EQ(f.log, (std::vector<std::string>{line, line}));
        EXPECT_TRUE(f.endpoints.empty());
    }
}

// The log has one line for each start.
TEST(DriverHost, waitsLongerBeforeEachStartAndGivesUp) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"fail on +0.99", 1},
        {"fail on +1 +2 +4 +8 +9.99", 5},
        {"fail on +1 +2 +4 +8 +10 +3600", 6},
        {"fail on +3600 change +3600", 12},
        {"fail on +3600 off on +3600", 12},
        {"on die +0.99", 1},
        {"on die +1 die +1 die +1 die +1 die +1 die +1 die +1", 8},  // the first delay each time
        {"on die change", 2},
        {"on die change +0.5 die +0.9", 2},  // the start replaced the pending restart
        {"on die off +3600", 1},
        {"no-driver on +3600", 1},
        {"no-folder on +3600", 1},
    };
    for (const auto& [events, starts] : cases) {
        Fixture f;
        for (const auto& event : words(events)) f.act(event);
        EXPECT_EQ(std::ranges::count_if(f.log, [](const auto& line) { return !line.contains("stopped"); }),
                  static_cast<long>(starts))
            << events;
        EXPECT_EQ(f.host().currentEndpoint().has_value(), f.host().isRunning()) << events;
    }
}

TEST(DriverHost, removesLeftoversAndStartsARealDriver) {
    Fixture f;
    const auto left = DriverSocketDirectory::create(f.folder.path());
    ASSERT_TRUE(left && left->writeProcessIdentifier(1 << 29));
    f.host().setEnabled(false);
    EXPECT_FALSE(fs::exists(left->path));

    f.made.reset();
    f.deps = DriverHostDeps::production();
    f.setup.executable = childProgram("../driver/cua-driver");
    f.host().setEnabled(true);
    const auto pid = f.host().runningPID();
    ASSERT_TRUE(pid && ::kill(*pid, 0) == 0);
    f.host().setEnabled(false);
    EXPECT_EQ(::kill(*pid, 0), -1);
}

TEST(DriverHost, stopsADriverByForceAndIgnoresItsLateExit) {
    Fixture f;
    f.spawner.stopBehaviour = FakeChild::StopBehaviour::ignores;
    f.host().permissionsChanged();
    EXPECT_EQ(f.spawner.count(), 0U) << "off";
    f.host().setEnabled(true);
    f.host().permissionsChanged();
    EXPECT_EQ(f.spawner.at(0).stopping(), "2000 ms, signal 15, 1000 ms, signal 9, 5000 ms");
    EXPECT_EQ(f.directories(), 1U);
    f.spawner.at(0).end(ExitStatus::signaled(SIGKILL));
    f.queue->advance(1h);
    EXPECT_EQ(f.endpoints.size(), 3U);
    EXPECT_EQ(f.spawner.count(), 2U);
    EXPECT_EQ(f.events, "+-+");
    f.made.reset();
    f.spawner.at(1).end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.log.size(), 2U);
}

// A waiting call ends the wait for readiness, and no restart is scheduled before it.
TEST(DriverHost, abandonsAStartForANewerCall) {
    Fixture f;
    bool superseded = false;
    f.deps.isSuperseded = [&] { return superseded; };
    f.ready = false;
    f.whileWaiting = [&] { superseded = true; };
    for (int i = 0; i < 6; ++i) {
        superseded = false;
        const TimePoint start = f.clock->now();
        f.host().setEnabled(true);
        EXPECT_EQ(f.clock->now() - start, 50ms);
        EXPECT_FALSE(f.host().isRunning());
    }
    EXPECT_EQ(f.startsAfter(1h), 6U);
    EXPECT_TRUE(f.log.empty());

    superseded = false;
    f.whileWaiting = [&] { f.spawner.last().end(ExitStatus::exited(0)); };
    f.host().setEnabled(true);
    EXPECT_EQ(f.startsAfter(20s), 11U) << "no delay was used up";
    superseded = true;
    EXPECT_EQ(f.startsAfter(1h), 11U);
}

}  // namespace
}  // namespace tarnik
