#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/model/AppState.h"
#include "app/model/HostEnvironment.h"
#include "app/model/LoginItem.h"
#include "app/pairing/LinkPairing.h"
#include "app/platform/AppPlatform.h"
#include "core/driver/DriverHost.h"
#include "core/foundation/CallbackGuard.h"
#include "core/foundation/CoalescingQueue.h"
#include "core/node/LaunchdTakeover.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeInstaller.h"
#include "core/node/NodeSupervisor.h"
#include "core/updates/ActivitySources.h"

namespace tarnik {

// The effects of AppModel.
struct AppModelDeps {
    AppPlatform platform;
    NodeSupervisorDeps supervisor;
    DriverHostDeps driver;
    NodeInstallerDeps installer;
    LaunchdTakeover::Deps launchd;
    // See LinkPairing::Deps.
    std::function<std::expected<std::string, HttpError>(const std::string& url)> fetchAnswer;
    // Returns the sources of a sample. The arguments return the process ids of the two children.
    std::function<ActivitySources(ActivitySources::RunningPID nodePID, ActivitySources::RunningPID driverPID)>
        activity;

    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    static AppModelDeps production(AppPlatform platform, const ProxyLookup& proxies);
};

// Runs the application: installs the helper node, starts the node and the desktop driver, watches the privacy
// switches, and publishes the state that the faces show.
//
// One per run, shared by Application, the delegate, the face and the control handler. Main thread only. No
// operation blocks, except that the destructor waits for running calls. Blocking calls run on two queues or
// on detached threads. They post their results to the main thread.
class AppModel {
public:
    // Called before each change of the state. The observer must not call the model.
    using WillChange = std::function<void(const AppState& now, const AppState& next)>;

    // Resolves the node home. Starts nothing.
    AppModel(HostEnvironment host, AppModelDeps deps);
    ~AppModel();
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    void observe(WillChange observer);  // observers are never removed
    const AppState& state() const { return state_; }
    const HostEnvironment& host() const { return host_; }
    const Url& webOrigin() const { return host_.settings.webOrigin; }
    const std::optional<NodeHome>& home() const { return home_; }

    // Removes an old launchd agent in the background, then starts everything else. Calls `done` when the
    // supervisor exists or nothing can be started. Without an agent, calls `done` before it returns. `done`
    // is not called after stop(). Later calls of start() are ignored.
    void start(const std::function<void()>& done = [] {});
    bool hasStarted() const { return running_ && running_->supervisor; }
    // Stops the polling, the pairing, the node and the driver, in this order, then calls `done` on the main
    // thread, at most 40 s later. Later calls are ignored.
    void stop(std::function<void()> done);

    // Calls `done` on the main thread: false during a pairing, and never after stop(). Needs hasStarted().
    void restartHelper(std::function<void(bool restarted)> done);
    void setFacts(const AppFacts& facts);
    void retryInstallation();  // ignored unless the setup failed or the helper is missing
    LinkPairing& pairing() { return *pairing_; }
    LoginItem& loginItem() { return loginItem_; }
    void refreshSwitches();
    void request(Switch which);
    // Takes a sample on the driver queue and calls `done` on the main thread. stop() drops waiting samples.
    void activitySample(std::function<void(ActivitySample)> done);

private:
    // The objects that start() creates.
    struct Running {
        std::shared_ptr<NodeLog> nodeLog;
        std::unique_ptr<NodeSupervisor> supervisor;
        std::unique_ptr<DriverHost> driver;
        std::optional<bool> driverEnabled;  // the last value that was put on the driver queue
        bool driverIsOn = false;  // the last value passed to `driver`; used on the driver queue only
        std::optional<RepeatingTimer> pollTimer;
    };

    std::function<void(MainThread::Task)> toMain() const;
    void change(const std::function<void(AppState&)>& edit);
    void begin(const std::function<void()>& done);
    void makePairing();
    void makeSupervisor();
    void makeDriver();
    void startInstallation();
    void installationEnded(const Setup& setup);
    void endpointChanged(const std::optional<CuaDriverEndpoint>& endpoint);

    const HostEnvironment host_;
    const AppModelDeps deps_;
    std::optional<NodeHome> home_;
    AppState state_;
    std::vector<WillChange> observers_;
    CoalescingQueue nodeCalls_;    // calls to the supervisor and to sessions; updates set the endpoint
    CoalescingQueue driverCalls_;  // calls to the driver host and samples; updates switch the driver
    std::unique_ptr<LinkPairing> pairing_;
    LoginItem loginItem_;
    std::unique_ptr<Running> running_;  // null before start()
    const CallbackGuard guard_;
};

}  // namespace tarnik
