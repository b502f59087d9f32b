#pragma once

#include <atomic>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/model/AppModelDeps.h"
#include "app/model/AppState.h"
#include "app/model/Machine.h"
#include "app/model/PairingSlot.h"
#include "app/model/WeakModel.h"
#include "core/driver/DriverHost.h"
#include "core/foundation/CoalescingQueue.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeSupervisor.h"

namespace tarnik {

// Conducts the application: installs the helper node, has it and the desktop driver run, accepts pairing
// links, watches the privacy switches, and publishes what there is to show.
//
// One per run, owned by the delegate. Main thread only. Nothing here blocks: what may take long runs on two
// queues or on a thread of its own, holds the model weakly and comes back through the main thread.
//
//   slot       event                                            to
//   none       a link that passes every rule                    starting
//   starting   first snapshot of its session                    active
//   starting   the link is no good, or no session can be had    none
//   active     a snapshot that is connected or ended            none; the snapshot stays to be seen
//   any        cancelPairing, stop                              none
class AppModel : public std::enable_shared_from_this<AppModel> {
    struct Passkey {};

public:
    // Whether a machine that has joined gives its account up for the one that sent the link.
    enum class Replacing { no, yes };

    // Hears of every change before it happens. Must not call the model.
    using WillChange = std::function<void(const AppState& now, const AppState& next)>;

    // Finds the node home, and starts nothing.
    static std::shared_ptr<AppModel> make(Machine machine, AppModelDeps deps);
    AppModel(Passkey, Machine machine, AppModelDeps deps);
    ~AppModel();
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    void observe(WillChange observer);  // for the rest of the run
    const AppState& state() const { return state_; }
    const Url& webOrigin() const { return machine_.settings.webOrigin; }
    const std::optional<NodeHome>& home() const { return home_; }

    // Ends an old agent, without blocking, and then makes and starts everything. Calls `done` once links are
    // taken, or if nothing can be started; at once where there is no agent. Once.
    void start(const std::function<void()>& done = [] {});
    bool hasStarted() const { return supervisor_ != nullptr; }

    // Ends everything, in this order: the polling, a pairing under way, the node, the driver. Runs `done` on
    // the main thread when all of it has ended, 40 s later at worst. Once.
    void stop(std::function<void()> done);

    // A link that was typed, pasted or opened. Whatever comes of it shows in the state.
    void connect(const std::string& link, Replacing replacing);
    void keepCurrentConnection();  // declines the replace offer
    void confirmPairing();         // the person's yes
    void cancelPairing();
    void pairingFinished();     // how it ended was seen
    void dismissLinkMessage();  // it was seen, or another link is being typed
    void refreshSwitches();
    void request(Switch which);

    // Runs `done` on the main thread, after the processes were listed elsewhere.
    void activitySample(std::function<void(ActivitySample)> done);

private:
    using Session = std::shared_ptr<PairingSession>;

    WeakModel weak();
    void change(const std::function<void(AppState&)>& edit);
    void begin(const std::function<void()>& done);
    void makeSupervisor();
    void makeDriver();
    void startInstallation();
    void installationEnded(const Setup& setup);
    void nodeChanged(const NodeState& node);
    void endpointChanged(const std::optional<CuaDriverEndpoint>& endpoint);
    void checkLink(const std::string& code);
    void linkChecked(PairingAttempt attempt, const std::optional<Url>& joinURL);
    void beginPairing(PairingAttempt attempt, const std::string& joinURL);
    void pairingBegan(PairingAttempt attempt, const std::expected<Session, PairingError>& session);
    void pairingUpdate(PairingAttempt attempt, const PairingSession::Snapshot& snapshot);
    bool adopts(PairingAttempt attempt, const PairingSession::Snapshot& snapshot);
    Session freeSlot();
    void refuse(std::string_view why);

    const Machine machine_;
    const AppModelDeps deps_;
    AppState state_;
    std::vector<WillChange> observers_;
    std::optional<NodeHome> home_;
    bool startCalled_ = false;
    PairingSlot slot_;
    PairingAttempt lastAttempt_ = 0;
    Session session_;                    // of the slot, once it is there and while it is in progress
    std::optional<bool> driverEnabled_;  // as the driver host was last told
    std::optional<RepeatingTimer> pollTimer_;

    std::shared_ptr<NodeLog> nodeLog_;
    CoalescingQueue nodeCalls_;    // of the supervisor and of sessions; an update is an endpoint
    CoalescingQueue driverCalls_;  // of the driver host, and samples; an update is whether it is enabled
    std::unique_ptr<NodeSupervisor> supervisor_;
    std::unique_ptr<DriverHost> driver_;
    std::atomic<PairingAttempt> wanted_ = 0;  // the attempt of the slot, for the queue; 0 for none
};

}  // namespace tarnik
