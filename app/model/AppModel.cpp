#include "app/model/AppModel.h"

#include <utility>

#include "app/model/AgentTakeover.h"
#include "app/model/ChosenHome.h"
#include "app/texts/FailureTexts.h"
#include "app/texts/LinkTexts.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/node/NodeInstaller.h"

namespace tarnik {
namespace {

constexpr Seconds pollInterval = Seconds(2);
constexpr Seconds logDrain = Seconds(1);
constexpr const char* accessibilityWasOnKey = "AccessibilityWasOn";

}  // namespace

AppModel::AppModel(HostEnvironment host, AppModelDeps deps)
    : host_(std::move(host)),
      deps_(std::move(deps)),
      nodeCalls_(deps_.makeQueue("tarnik.node")),
      driverCalls_(deps_.makeQueue("tarnik.driver")),
      loginItem_({.service = deps_.platform.loginItem,
                  .defaults = deps_.platform.defaults,
                  .post = deps_.platform.mainThread.post,
                  .detach = deps_.platform.detach,
                  .log = deps_.platform.log,
                  .managed = host_.policy.policy.startAtLogin,
                  .onState = [this](const LoginItem::State& login) {
                      change([&](AppState& next) {
                          next.startAtLogin = login.system;
                          next.startAtLoginFailure = login.failure;
                      });
                  }}) {
    makePairing();
    state_.grantsGoStale = deps_.platform.switches.grantsGoStale;
    state_.hasDriver = host_.driverExecutable.has_value();
    const auto& policy = host_.policy.policy;
    state_.managed = {.allowsPairing = policy.allowsPairing(),
                      .locksStartAtLogin = policy.locksStartAtLogin(),
                      .hidesSwitches = policy.hidesSwitches()};
    state_.accessibilityWasOn = deps_.platform.defaults.flag(accessibilityWasOnKey);
    auto home = chosenHome(deps_.platform.defaults, host_.userFolder);
    if (!home) {
        state_.homeError = describe(home.error());
        return;
    }
    home_ = std::move(*home);
    state_.joined = home_->hasJoined();
}

AppModel::~AppModel() {
    nodeCalls_.close();
    driverCalls_.close();
}

void AppModel::observe(WillChange observer) {
    observers_.push_back(std::move(observer));
}

std::function<void(MainThread::Task)> AppModel::toMain() const {
    return guard_.wrapPost(deps_.platform.mainThread.post);
}

void AppModel::change(const std::function<void(AppState&)>& edit) {
    AppState next = state_;
    edit(next);
    if (home_) next.joined = home_->hasJoined();
    if (next == state_) return;
    const bool hasJustJoined = next.joined && !state_.joined;
    const bool hasNewMessage = next.linkMessage != state_.linkMessage;
    const bool hasNewRefusal = hasNewMessage && next.linkMessage && !next.checkingLink;
    const bool hasNewLoginFailure = next.startAtLoginFailure && !state_.startAtLoginFailure;
    for (const auto& observer : observers_) observer(state_, next);
    state_ = std::move(next);
    // A message about a refused link is obsolete once the machine has joined. A message that came with this
    // change is kept.
    if (hasJustJoined && !hasNewMessage && !pairing_->isInProgress()) pairing_->dismissMessage();
    // The window has one place for messages, so the latest one replaces the other.
    if (hasNewLoginFailure)
        pairing_->dismissMessage();
    else if (hasNewRefusal)
        loginItem_.dismissFailure();
}

void AppModel::makePairing() {
    pairing_ = std::make_unique<LinkPairing>(
        LinkPairing::Deps{.webOrigin = webOrigin(),
                          .permission = {.pairing = host_.policy.policy.allowsPairing(),
                                         .replacing = host_.policy.policy.allowsReplacing()},
                          .isInstalled = [this] { return home_ && hasStarted() && home_->isInstalled(); },
                          .hasJoined = [this] { return home_ && home_->hasJoined(); },
                          .fetchAnswer = deps_.fetchAnswer,
                          .detach = deps_.platform.detach,
                          .begin =
                              [this](const std::string& joinURL, LinkPairing::OnSnapshot onSnapshot) {
                                  return running_->supervisor->beginPairing(joinURL, std::move(onSnapshot));
                              },
                          .post = deps_.platform.mainThread.post,
                          .onChange =
                              [this](const LinkPairing::State& link) {
                                  change([&](AppState& next) {
                                      next.pairing = link.pairing;
                                      next.linkMessage.reset();
                                      next.linkCause.reset();
                                      if (link.message) {
                                          next.linkMessage = link.message->text;
                                          next.linkCause = link.message->cause;
                                      }
                                      next.replaceOffer = link.offer;
                                      next.checkingLink = link.checking;
                                  });
                              }},
        nodeCalls_);
}

void AppModel::start(const std::function<void()>& done) {
    if (state_.stopping || running_) return;
    running_ = std::make_unique<Running>();
    if (!home_) return done();
    const AgentTakeover takeover{
        .home = *home_, .userFolder = host_.userFolder, .launchd = deps_.launchd, .log = deps_.platform.log};
    if (!takeover.isNeeded()) return begin(done);
    const bool started = deps_.platform.detach("tarnik.takeover", [this, takeover, toMain = toMain(), done] {
        takeover.run();
        toMain([this, done] { begin(done); });
    });
    if (started) return;
    installationEnded(Setups::Failed{std::string(FailureTexts::tooBusy)});
    done();
}

// Called after the takeover, because an old agent may run a node on the same home.
void AppModel::begin(const std::function<void()>& done) {
    if (state_.stopping) return;
    const auto& logBytes = host_.policy.policy.helperLogBytes;
    running_->nodeLog = NodeLog::make(host_.nodeLog, logBytes ? logBytes->value : NodeLog::defaultCap);
    makeSupervisor();
    makeDriver();
    refreshSwitches();
    running_->pollTimer =
        deps_.platform.mainThread.repeat(pollInterval, guard_.wrap([this] { refreshSwitches(); }));
    startInstallation();
    done();
}

void AppModel::makeSupervisor() {
    auto deps = deps_.supervisor;
    deps.nodeLog = running_->nodeLog;
    deps.isEnding = [this] { return nodeCalls_.hasEnded(); };
    running_->supervisor = std::make_unique<NodeSupervisor>(
        *home_, host_.inherited, std::move(deps), deps_.platform.log,
        [this, toMain = toMain()](const NodeState& node) {
            toMain([this, node] { change([&](AppState& next) { next.node = node; }); });
        });
}

void AppModel::makeDriver() {
    auto deps = deps_.driver;
    deps.isSuperseded = [this] { return driverCalls_.isSuperseded(); };
    running_->driver = std::make_unique<DriverHost>(
        DriverHost::Setup{.executable = host_.driverExecutable,
                          .applicationSupport = host_.applicationSupport,
                          .hostBundleID = std::string(TarnikIdentity::bundleIdentifier),
                          .inherited = host_.inherited},
        std::move(deps), deps_.platform.log,
        [this, toMain = toMain()](const std::optional<CuaDriverEndpoint>& endpoint) {
            toMain([this, endpoint] { endpointChanged(endpoint); });
        });
}

void AppModel::startInstallation() {
    NodeInstaller installer(*home_,
                            {.releaseBase = host_.settings.nodeReleaseBase,
                             .releasePublicKey = host_.settings.nodeReleasePublicKey,
                             .platform = host_.platform,
                             .minimumVersion = host_.settings.nodeMinVersion,
                             .runtime = host_.settings.runtime},
                            deps_.installer);
    const bool started = deps_.platform.detach(
        "tarnik.install", [this, installer = std::move(installer), home = *home_, toMain = toMain()] {
            const auto onText = [&](const std::string& text) {
                toMain([this, text] {
                    change([&](AppState& next) {
                        next.setup = Setups::Installing{text};
                        next.download.reset();
                    });
                });
            };
            const auto onBytes = [&](std::int64_t received, std::optional<std::int64_t> total) {
                toMain([this, received, total] {
                    change([&](AppState& next) { next.download = {received, total}; });
                });
            };
            Setup setup = Setups::Ready{};
            if (!home.isInstalled()) {
                const auto installed = installer.install({.text = onText, .bytes = onBytes});
                if (!installed) setup = failedSetup(installed.error());
            }
            toMain([this, setup] { installationEnded(setup); });
        });
    if (!started) installationEnded(Setups::Failed{std::string(FailureTexts::tooBusy)});
}

void AppModel::installationEnded(const Setup& setup) {
    change([&](AppState& next) {
        next.setup = setup;
        next.download.reset();
    });
    if (state_.linkMessage == LinkTexts::stillInstalling) pairing_->dismissMessage();
    if (!std::holds_alternative<Setups::Ready>(setup)) return;
    nodeCalls_.call([this] { running_->supervisor->start(); });
}

void AppModel::endpointChanged(const std::optional<CuaDriverEndpoint>& endpoint) {
    change([&](AppState& next) { next.endpoint = endpoint; });
    nodeCalls_.update([this, endpoint] { running_->supervisor->setEndpoint(endpoint); });
}

void AppModel::stop(std::function<void()> done) {
    if (state_.stopping) return;
    if (running_) running_->pollTimer.reset();
    const auto session = pairing_->stop();
    change([](AppState& next) { next.stopping = true; });
    if (!hasStarted()) return deps_.platform.mainThread.post(std::move(done));
    driverCalls_.end();
    nodeCalls_.end([this, session, done = std::move(done)] {
        if (session) session->cancel();
        running_->supervisor->stop();
        running_->nodeLog->drain(logDrain);
        driverCalls_.end([this, done] {
            running_->driver->shutdown();
            deps_.platform.mainThread.post(done);
        });
    });
}

void AppModel::restartHelper(std::function<void(bool restarted)> done) {
    nodeCalls_.call([this, done = std::move(done)] {
        const bool restarted = running_->supervisor->restart();
        deps_.platform.mainThread.post([done, restarted] { done(restarted); });
    });
}

void AppModel::refreshSwitches() {
    if (state_.stopping) return;
    const auto& isOn = deps_.platform.switches.isOn;
    const SwitchSnapshot switches{.accessibility = isOn(Switch::accessibility),
                                  .screenRecording = isOn(Switch::screenRecording)};
    const bool firstTimeOn = switches.accessibility && !state_.accessibilityWasOn;
    if (firstTimeOn) deps_.platform.defaults.setFlag(accessibilityWasOnKey);
    change([&](AppState& next) {
        next.switches = switches;
        next.accessibilityWasOn |= switches.accessibility;
    });
    const bool wanted = switches.allOn();
    if (!running_ || !running_->driver || running_->driverEnabled == wanted) return;
    running_->driverEnabled = wanted;
    // If a switch is off only briefly, the queue merges the two updates. The driver is still restarted,
    // because a process keeps the rights that it had at its start.
    driverCalls_.update([this, wanted] {
        if (wanted && running_->driverIsOn)
            running_->driver->permissionsChanged();
        else
            running_->driver->setEnabled(wanted);
        running_->driverIsOn = wanted;
    });
}

void AppModel::setFacts(const AppFacts& facts) {
    change([&](AppState& next) {
        next.helper = facts.helper;
        next.waitingUpdate = facts.waitingUpdate;
        next.checksForUpdates = facts.checksForUpdates;
        next.driverHasGivenUp = facts.driverHasGivenUp;
    });
}

void AppModel::retryInstallation() {
    const bool failed = std::holds_alternative<Setups::Failed>(state_.setup);
    const bool missing = std::holds_alternative<Setups::Ready>(state_.setup) &&
                         std::holds_alternative<NodeStates::NotInstalled>(state_.node);
    if (state_.stopping || !running_ || !(failed || missing)) return;
    change([](AppState& next) { next.setup = Setups::Installing{}; });
    if (hasStarted()) return startInstallation();
    running_.reset();  // the system was too busy for the takeover
    start();
}

void AppModel::request(Switch which) {
    const auto& operations = deps_.platform.switches;
    // Only the prompt for Accessibility returns the real state. It shows no dialog while the switch is on.
    const bool isOff = which == Switch::accessibility ? !operations.prompt(which) : !operations.isOn(which);
    if (isOff && which == Switch::screenRecording) operations.prompt(which);
    if (isOff) operations.openSettings(which);
    refreshSwitches();
}

void AppModel::activitySample(std::function<void(ActivitySample)> done) {
    const OwnActivity own{
        .settingUp = !std::holds_alternative<Setups::Ready>(state_.setup) || pairing_->isInProgress(),
        .windowInUse = deps_.platform.windowInUse()};
    // Both pointers are read on this thread, because begin() may set them while the queue runs.
    const auto* supervisor = running_ ? running_->supervisor.get() : nullptr;
    const auto* driver = running_ ? running_->driver.get() : nullptr;
    driverCalls_.call([this, own, supervisor, driver, done = std::move(done)] {
        const auto sources = deps_.activity(
            [supervisor] { return supervisor != nullptr ? supervisor->runningPID() : std::nullopt; },
            [driver] { return driver != nullptr ? driver->runningPID() : std::nullopt; });
        deps_.platform.mainThread.post([done, sample = sources.sample(own)] { done(sample); });
    });
}

}  // namespace tarnik
