#include "core/driver/DriverHost.h"

#include <csignal>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/ChildPrograms.h"
#include "tests/support/FakeChild.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Uses a manual clock. A driver is ready if `ready` is set; `whileWaiting` is called at each check before.
struct Fixture {
    TemporaryFolder folder;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<ManualQueue> queue = std::make_shared<ManualQueue>(clock);
    FakeSpawner spawner;
    bool ready = true;
    std::function<void()> whileWaiting = [] {};
    std::vector<std::string> log;
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
    std::size_t directories() const { return DriverSocketDirectory::owned(folder.path()).size(); }
};

TEST(DriverHost, publishesTheEndpointWhileTheDriverRuns) {
    Fixture f;
    f.host().setEnabled(true);
    f.host().setEnabled(true);
    EXPECT_EQ(f.spawner.count(), 1U);
    const auto directory = DriverSocketDirectory::owned(f.folder.path()).at(0);
    const CuaDriverEndpoint endpoint{.socketPath = directory.socketPath, .binaryPath = "/driver"};
    EXPECT_EQ(f.host().currentEndpoint(), endpoint);
    EXPECT_EQ(f.spawner.last().request().arguments.at(5), endpoint.socketPath);
    EXPECT_EQ(f.host().runningPID(), f.spawner.last().handle()->pid());
    EXPECT_EQ(f.host().runningPID(), directory.readProcessIdentifier());

    f.host().shutdown();
    EXPECT_EQ(f.spawner.last().handle()->exitStatus(), ExitStatus::exited(0));
    EXPECT_TRUE(f.spawner.last().signals().empty());
    EXPECT_FALSE(f.host().isRunning());
    EXPECT_EQ(f.endpoints, (std::vector<std::optional<CuaDriverEndpoint>>{endpoint, std::nullopt}));
    EXPECT_EQ(f.log, std::vector<std::string>{"desktop driver ready"});
    EXPECT_EQ(f.directories(), 0U);
}

TEST(DriverHost, retriesOncePerFailedStart) {
    struct Case {
        const char* line;
        std::function<void(Fixture&)> spoil;
        Seconds took = 0s;
        std::size_t directoriesLeft = 0;
    };
    const Case cases[] = {
        {"the desktop driver didn't start: posix_spawn /driver failed: Permission denied",
         [](Fixture& f) { f.spawner.failure = SystemError{"posix_spawn /driver", EACCES}; }},
        {"the desktop driver stopped before it was ready (exit 3)",
         [](Fixture& f) { f.whileWaiting = [&f] { f.spawner.last().end(ExitStatus::exited(3)); }; }, 0.05s},
        {"the desktop driver didn't become ready in time", [](Fixture&) {}, 10.05s},
        {"couldn't record the desktop driver's pid",
         [](Fixture& f) {
             f.deps.launch = [&f, launch = f.deps.launch](const auto& recipe, int fd, auto onExit) {
                 for (const auto& made : DriverSocketDirectory::owned(f.folder.path()))
                     fs::create_directory(made.pidFilePath());
                 return launch(recipe, fd, std::move(onExit));
             };
         },
         0s, 1},
    };
    for (const auto& c : cases) {
        Fixture f;
        f.ready = false;
        c.spoil(f);
        const TimePoint start = f.clock->now();
        f.host().setEnabled(true);
        EXPECT_EQ(f.log, std::vector<std::string>{c.line});
        EXPECT_NEAR(Seconds(f.clock->now() - start).count(), c.took.count(), 0.01) << c.line;
        EXPECT_FALSE(f.host().isRunning()) << c.line;
        EXPECT_EQ(f.directories(), c.directoriesLeft) << c.line;
        EXPECT_TRUE(f.spawner.count() == 0 || !f.spawner.last().handle()->isRunning()) << c.line;
        f.queue->advance(0.9s);
        EXPECT_EQ(f.log.size(), 1U) << c.line;
        f.queue->advance(0.1s);
        EXPECT_EQ(f.log, (std::vector<std::string>{c.line, c.line}));
        EXPECT_TRUE(f.endpoints.empty()) << c.line;
    }
}

TEST(DriverHost, waitsLongerBeforeEachStartAndGivesUp) {
    Fixture f;
    f.spawner.failure = SystemError{"pipe", EMFILE};
    f.host().setEnabled(true);
    for (const Seconds delay : {1s, 2s, 4s, 8s, 10s}) {
        const auto before = f.log.size();
        f.queue->advance(delay - 10ms);
        EXPECT_EQ(f.log.size(), before);
        f.queue->advance(10ms);
        EXPECT_EQ(f.log.size(), before + 1);
    }
    f.queue->advance(1h);
    EXPECT_EQ(f.log.size(), 6U);
    f.host().permissionsChanged();
    f.queue->advance(1h);
    EXPECT_EQ(f.log.size(), 12U) << "from the first delay again";
    f.host().setEnabled(false);
    f.host().setEnabled(true);
    f.queue->advance(1h);
    EXPECT_EQ(f.log.size(), 18U) << "again";
}

TEST(DriverHost, restartsADriverThatEnds) {
    Fixture f;
    f.host().setEnabled(true);
    for (int i = 0; i < 7; ++i) {
        f.spawner.last().end(ExitStatus::signaled(SIGSEGV));
        EXPECT_EQ(f.endpoints.back(), std::nullopt);
        f.queue->advance(1s);  // the first delay each time
        EXPECT_TRUE(f.host().currentEndpoint().has_value());
    }
    f.spawner.last().end(ExitStatus::exited(0));
    f.host().permissionsChanged();
    EXPECT_EQ(f.spawner.count(), 9U);
    f.queue->advance(0.5s);
    f.spawner.last().end(ExitStatus::exited(0));
    f.queue->advance(0.9s);
    EXPECT_EQ(f.spawner.count(), 9U) << "the start replaced the pending restart";
    f.host().setEnabled(false);
    f.queue->advance(1h);
    EXPECT_EQ(f.spawner.count(), 9U);
}

TEST(DriverHost, doesNotRetryWithoutADriverOrAFolder) {
    Fixture none;
    none.setup.executable.reset();
    Fixture noFolder;
    noFolder.setup.applicationSupport += "/a/b";
    for (auto* f : {&none, &noFolder}) {
        f->host().setEnabled(true);
        f->queue->advance(1h);
        EXPECT_EQ(f->log.size(), 1U);
    }
}

TEST(DriverHost, removesLeftoversOfAnEarlierRunWhileOff) {
    Fixture f;
    const auto left = DriverSocketDirectory::create(f.folder.path());
    ASSERT_TRUE(left && left->writeProcessIdentifier(1 << 29));
    f.host().setEnabled(false);
    EXPECT_FALSE(fs::exists(left->path));
}

TEST(DriverHost, startsARealDriver) {
    Fixture f;
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
    f.queue->advance(1h);
    EXPECT_EQ(f.spawner.count(), 6U);
    EXPECT_TRUE(f.log.empty());

    superseded = false;
    f.whileWaiting = [&] { f.spawner.last().end(ExitStatus::exited(0)); };
    f.host().setEnabled(true);
    f.queue->advance(20s);
    EXPECT_EQ(f.spawner.count(), 11U) << "no delay was used up";
    superseded = true;
    f.queue->advance(1h);
    EXPECT_EQ(f.spawner.count(), 11U);
}

}  // namespace
}  // namespace tarnik
