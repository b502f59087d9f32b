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

// A machine for AppModel with a manual clock and fake children, network, switches and defaults. The node home
// is real, in a temporary folder.
class FakeMachine {
public:
    FakeMachine();
    ~FakeMachine() { model_.reset(); }
    FakeMachine(const FakeMachine&) = delete;
    FakeMachine& operator=(const FakeMachine&) = delete;

    // Made at the first use. Change the fields below before that.
    AppModel& model() { return *sharedModel(); }
    const std::shared_ptr<AppModel>& sharedModel();
    const AppState& state() { return model().state(); }

    NodeHome home() const { return NodeHome::resolve(texts.at("NodeHome"), folder.path()).value(); }
    void install() const;
    void join() const { folder.write(home().joinRecord().substr(folder.path().size()), ""); }
    void leaveAgent() const;  // a LaunchAgent of a command-line install
    static std::string code(char letter) { return std::string(22, letter); }
    static std::string link(char letter = 'a') { return "https://tarnik.example/c/" + code(letter); }
    static JoinCode joinCode(char letter) { return {.text = code(letter), .link = link(letter)}; }

    // Connects by the link and gives up the current account.
    void replaceBy(char letter) { model().pairing().connect(joinCode(letter), LinkPairing::Replacing::yes); }

    // Runs background tasks and posted tasks until none is left.
    void settle();
    void advance(Seconds by);

    // Performs the events, which are separated by spaces: "link:a" connects by a link and settles, "check:a"
    // only connects, "prompt" prints the prompt and waits until it was read, "die" ends the driver, "+16"
    // advances 16 s.
    void act(const std::string& events);

    // Pairs by an accepted link until its session has printed the prompt.
    void pairUpToPrompt();
    bool pairingIs(const PairingPhase& phase);  // waits, because other threads read the terminals

    // At most one of each may be alive.
    std::size_t liveNodes() { return live(nodes) + live(terminals); }
    std::size_t liveDrivers() { return live(drivers); }

    ShortTemporaryFolder folder;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualMainThread main{clock};
    FakeSpawner nodes;
    FakeSpawner terminals;
    FakeSpawner drivers;
    bool driverIsReady = true;
    std::function<void()> whileDriverStarts = [] {};  // called by each readiness probe
    std::deque<BackgroundTasks::Task> detached;
    bool threadsAreLeft = true;
    std::map<std::string, std::string> texts;  // the user defaults
    std::set<std::string> flags;
    SwitchSnapshot switches;
    bool promptTurnsOn = false;
    std::vector<std::string> requests;  // "prompt accessibility", "settings screenRecording"
    std::vector<std::string> log;
    std::set<std::string> goodLinks;  // the codes that the service accepts
    HttpError linkFailure{.kind = HttpError::Kind::badStatus, .code = 404};  // for the other codes
    bool windowInUse = false;
    std::vector<AppState> states;  // every published state
    std::optional<std::string> releaseBase;
    Policy policy;
    std::map<std::string, std::shared_ptr<ManualQueue>> queues;  // by label
    AppModelDeps deps;

private:
    static std::size_t live(FakeSpawner& spawner);

    std::mutex logMutex_;
    std::shared_ptr<AppModel> model_;
};

// A machine with an installed helper whose node waits for a link.
struct StartedMachine : FakeMachine {
    StartedMachine() {
        install();
        model().start();
        settle();
    }
    void giveLink(char letter) {
        model().pairing().connect(link(letter));
        settle();
    }
};

}  // namespace tarnik
