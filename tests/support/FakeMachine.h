#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "app/model/AppModel.h"
#include "tests/support/FakeChild.h"
#include "tests/support/ManualMainThread.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

// A machine for AppModel on which nothing really happens: made-up time, children, network, switches and
// defaults; a real node home in a temporary folder.
class FakeMachine {
public:
    FakeMachine();
    ~FakeMachine();
    FakeMachine(const FakeMachine&) = delete;
    FakeMachine& operator=(const FakeMachine&) = delete;

    // Made at the first use; change what follows before.
    AppModel& model();
    const std::shared_ptr<AppModel>& sharedModel();
    const AppState& state() { return model().state(); }

    void install() const;
    void join() const;
    void leaveAgent() const;                     // of a command-line install
    static std::string link(char letter = 'a');  // one whose code is this letter 22 times
    static std::string code(char letter) { return std::string(22, letter); }

    // Runs what waits: detached work, then the main thread, until nothing is left.
    void settle();
    void advance(Seconds by);

    // Up to the session of an accepted link; it has printed its prompt.
    void pairUpToPrompt();
    bool pairingIs(const PairingPhase& phase);  // soon, since terminals are read on threads of their own

    // At most one of each may ever live.
    std::size_t liveNodes() { return live(nodes) + live(terminals); }
    std::size_t liveDrivers() { return live(drivers); }

    TemporaryFolder folder;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualMainThread main{clock};
    FakeSpawner nodes;
    FakeSpawner terminals;
    FakeSpawner drivers;
    bool driverIsReady = true;
    std::function<void()> whileDriverStarts = [] {};  // at each look whether it is ready
    std::deque<BackgroundTasks::Task> detached;
    bool threadsAreLeft = true;
    std::map<std::string, std::string> texts;  // the user defaults
    std::set<std::string> flags;
    SwitchSnapshot switches;
    bool promptTurnsOn = false;
    std::vector<std::string> requests;  // "prompt accessibility", "settings screenRecording"
    std::vector<std::string> log;
    std::set<std::string> goodLinks;  // the codes that the service has an answer for
    bool windowInUse = false;
    std::vector<AppState> states;  // every one published
    std::optional<std::string> releaseBase;
    std::map<std::string, std::shared_ptr<ManualQueue>> queues;  // by label
    AppModelDeps deps;

private:
    static std::size_t live(FakeSpawner& spawner);

    std::mutex logMutex_;
    std::shared_ptr<AppModel> model_;
};

}  // namespace tarnik
