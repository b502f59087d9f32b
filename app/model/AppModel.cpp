#include "app/model/AppModel.h"

#include <utility>

#include "app/model/AgentTakeover.h"
#include "app/model/PairingInbox.h"
#include "app/model/PlainSentence.h"
#include "app/model/WindowTexts.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/node/NodeInstaller.h"
#include "core/pairing/JoinLink.h"

namespace tarnik {
namespace {

constexpr Seconds pollInterval = Seconds(2);
constexpr Seconds logDrain = Seconds(1);
constexpr const char* accessibilityWasOnKey = "AccessibilityWasOn";

bool isUnderWay(const PairingSlot& slot) {
    return !std::holds_alternative<PairingSlots::None>(slot);
}

}  // namespace

std::shared_ptr<AppModel> AppModel::make(Machine machine, AppModelDeps deps) {
    return std::make_shared<AppModel>(Passkey{}, std::move(machine), std::move(deps));
}

AppModel::AppModel(Passkey, Machine machine, AppModelDeps deps)
    : machine_(std::move(machine)),
      deps_(std::move(deps)),
      nodeCalls_(deps_.makeQueue("tarnik.node")),
      driverCalls_(deps_.makeQueue("tarnik.driver")) {
    state_.grantsGoStale = deps_.platform.switches.grantsGoStale;
    state_.accessibilityWasOn = deps_.platform.defaults.flag(accessibilityWasOnKey);
    const auto chosen = deps_.platform.defaults.text(std::string(TarnikIdentity::nodeHomeDefaultsKey));
    auto home = NodeHome::resolve(chosen, machine_.userFolder);
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

WeakModel AppModel::weak() {
    return {.model = weak_from_this(), .post = deps_.platform.mainThread.post};
}

void AppModel::change(const std::function<void(AppState&)>& edit) {
    AppState next = state_;
    edit(next);
    next.checkingLink = std::holds_alternative<PairingSlots::Starting>(slot_);
    // Whatever was wrong with a link, the machine has joined now.
    if (next.joined && !state_.joined && !isUnderWay(slot_)) next.linkMessage.reset();
    if (next == state_) return;
    for (const auto& observer : observers_) observer(state_, next);
    state_ = std::move(next);
}

void AppModel::start(const std::function<void()>& done) {
    if (state_.stopping || std::exchange(startCalled_, true)) return;
    if (!home_) return done();
    const AgentTakeover takeover{.home = *home_,
                                 .userFolder = machine_.userFolder,
                                 .launchd = deps_.launchd,
                                 .log = deps_.platform.log};
    if (!takeover.isNeeded()) return begin(done);
    const bool started = deps_.detach("tarnik.takeover", [takeover, weak = weak(), done] {
        takeover.run();
        weak.run([done](AppModel& m) { m.begin(done); });
    });
    if (started) return;
    installationEnded(Setups::Failed{std::string(WindowTexts::tooBusy)});
    done();
}

// Nothing uses the node home before an old agent has ended.
void AppModel::begin(const std::function<void()>& done) {
    if (state_.stopping) return;
    nodeLog_ = NodeLog::make(machine_.nodeLog);
    makeSupervisor();
    makeDriver();
    refreshSwitches();
    pollTimer_ = deps_.platform.mainThread.repeat(pollInterval, [weak = weak_from_this()] {
        if (const auto model = weak.lock()) model->refreshSwitches();
    });
    startInstallation();
    done();
}

void AppModel::makeSupervisor() {
    auto deps = deps_.supervisor;
    deps.nodeLog = nodeLog_;
    deps.isEnding = [this] { return nodeCalls_.hasEnded(); };
    supervisor_ = std::make_unique<NodeSupervisor>(
        *home_, machine_.inherited, std::move(deps), deps_.platform.log,
        [weak = weak()](const NodeState& node) { weak.run([node](AppModel& m) { m.nodeChanged(node); }); });
}

void AppModel::makeDriver() {
    auto deps = deps_.driver;
    deps.isSuperseded = [this] { return driverCalls_.isSuperseded(); };
    driver_ = std::make_unique<DriverHost>(
        DriverHost::Setup{.executable = machine_.driverExecutable,
                          .applicationSupport = machine_.applicationSupport,
                          .hostBundleID = std::string(TarnikIdentity::bundleIdentifier),
                          .inherited = machine_.inherited},
        std::move(deps), deps_.platform.log,
        [weak = weak()](const std::optional<CuaDriverEndpoint>& endpoint) {
            weak.run([endpoint](AppModel& m) { m.endpointChanged(endpoint); });
        });
}

void AppModel::startInstallation() {
    NodeInstaller installer(*home_,
                            {.releaseBase = machine_.settings.nodeReleaseBase,
                             .releasePublicKey = machine_.settings.nodeReleasePublicKey,
                             .platform = machine_.platform,
                             .minimumVersion = machine_.settings.nodeMinVersion,
                             .developmentRuntime = machine_.settings.developmentRuntime},
                            deps_.installer);
    const bool started =
        deps_.detach("tarnik.install", [installer = std::move(installer), home = *home_, weak = weak()] {
            if (home.isInstalled()) {
                return weak.run([](AppModel& m) { m.installationEnded(Setups::Ready{}); });
            }
            const auto installed = installer.install(
                {.text =
                     [&weak](const std::string& text) {
                         weak.run([text](AppModel& m) {
                             m.change([&](AppState& next) {
                                 next.setup = Setups::Installing{text};
                                 next.download.reset();
                             });
                         });
                     },
                 .bytes =
                     [&weak](std::int64_t received, std::optional<std::int64_t> total) {
                         weak.run([received, total](AppModel& m) {
                             m.change([&](AppState& next) { next.download = {received, total}; });
                         });
                     }});
            const Setup setup = installed ? Setup(Setups::Ready{}) : Setup(failedSetup(installed.error()));
            weak.run([setup](AppModel& m) { m.installationEnded(setup); });
        });
    if (!started) installationEnded(Setups::Failed{std::string(WindowTexts::tooBusy)});
}

void AppModel::installationEnded(const Setup& setup) {
    change([&](AppState& next) {
        next.setup = setup;
        next.download.reset();
        next.joined = home_->hasJoined();
        if (next.linkMessage == WindowTexts::stillInstalling) next.linkMessage.reset();
    });
    if (!std::holds_alternative<Setups::Ready>(setup)) return;
    nodeCalls_.call([this] { supervisor_->start(); });
}

void AppModel::nodeChanged(const NodeState& node) {
    change([&](AppState& next) {
        next.node = node;
        next.joined = home_->hasJoined();
    });
}

void AppModel::endpointChanged(const std::optional<CuaDriverEndpoint>& endpoint) {
    change([&](AppState& next) { next.endpoint = endpoint; });
    nodeCalls_.update([this, endpoint] { supervisor_->setEndpoint(endpoint); });
}

void AppModel::stop(std::function<void()> done) {
    if (state_.stopping) return;
    pollTimer_.reset();
    const auto session = freeSlot();
    change([](AppState& next) {
        next.stopping = true;
        next.pairing.reset();
        next.linkMessage.reset();
        next.replaceOffer.reset();
    });
    if (!hasStarted()) return deps_.platform.mainThread.post(std::move(done));
    driverCalls_.end();
    nodeCalls_.end([this, session, done = std::move(done)] {
        if (session) session->cancel();
        supervisor_->stop();
        nodeLog_->drain(logDrain);
        driverCalls_.end([this, done] {
            driver_->shutdown();
            deps_.platform.mainThread.post(done);
        });
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
        if (home_) next.joined = home_->hasJoined();
    });
    const bool wanted = switches.allOn();
    if (!driver_ || driverEnabled_ == wanted) return;
    driverEnabled_ = wanted;
    driverCalls_.update([this, wanted] { driver_->setEnabled(wanted); });
}

void AppModel::request(Switch which) {
    const auto& operations = deps_.platform.switches;
    // Of the two only Accessibility's prompt tells what the switch is, and asks nothing while it is on.
    const bool isOff = which == Switch::accessibility ? !operations.prompt(which) : !operations.isOn(which);
    if (isOff && which == Switch::screenRecording) operations.prompt(which);
    if (isOff) operations.openSettings(which);
    refreshSwitches();
}

void AppModel::activitySample(std::function<void(ActivitySample)> done) {
    const OwnActivity own{
        .settingUp = !std::holds_alternative<Setups::Ready>(state_.setup) || isUnderWay(slot_),
        .windowInUse = deps_.platform.windowInUse()};
    // Looked up here, since begin() may make them while the queue works.
    driverCalls_.call(
        [this, own, supervisor = supervisor_.get(), driver = driver_.get(), done = std::move(done)] {
            const auto sources =
                deps_.activity([supervisor] { return supervisor ? supervisor->runningPID() : std::nullopt; },
                               [driver] { return driver ? driver->runningPID() : std::nullopt; });
            deps_.platform.mainThread.post([done, sample = sources.sample(own)] { done(sample); });
        });
}

void AppModel::connect(const std::string& link, Replacing replacing) {
    if (state_.stopping) return;
    const auto code = JoinLink::code(link, webOrigin());
    if (!code) return refuse(WindowTexts::notALink);
    if (!home_ || !hasStarted() || !home_->isInstalled()) return refuse(WindowTexts::stillInstalling);
    if (isUnderWay(slot_)) return refuse(describe(PairingFailure::busy));
    if (home_->hasJoined() && replacing == Replacing::no) {
        return change([&](AppState& next) {
            next.replaceOffer = link;
            next.linkMessage.reset();
        });
    }
    checkLink(*code);
}

// A refusal ends an offer too: what it was for can't be done now.
void AppModel::refuse(std::string_view why) {
    change([&](AppState& next) {
        next.linkMessage = why;
        next.replaceOffer.reset();
    });
}

void AppModel::checkLink(const std::string& code) {
    const auto attempt = ++lastAttempt_;
    slot_ = PairingSlots::Starting{attempt};
    wanted_ = attempt;
    change([](AppState& next) {
        next.linkMessage = WindowTexts::checkingLink;
        next.replaceOffer.reset();
        next.pairing.reset();
    });
    const auto url = JoinLink::answerURL(code, webOrigin()).text();
    const bool started =
        deps_.detach("tarnik.link", [fetch = deps_.fetchAnswer, url, code, attempt, weak = weak()] {
            const auto answer = fetch(url);
            const auto joinURL = answer ? JoinLink::joinURL(*answer, code) : std::nullopt;
            weak.run([attempt, joinURL](AppModel& m) { m.linkChecked(attempt, joinURL); });
        });
    if (started) return;
    freeSlot();
    refuse(WindowTexts::tooBusy);
}

void AppModel::linkChecked(PairingAttempt attempt, const std::optional<Url>& joinURL) {
    if (slot_ != PairingSlot(PairingSlots::Starting{attempt})) return;  // cancelled meanwhile
    if (joinURL) {
        return nodeCalls_.call([this, attempt, text = joinURL->text()] { beginPairing(attempt, text); });
    }
    freeSlot();
    refuse(WindowTexts::linkExpired);
}

// On the queue, since it waits for the node's end.
void AppModel::beginPairing(PairingAttempt attempt, const std::string& joinURL) {
    if (wanted_ != attempt) return;  // cancelled before its turn
    const auto onUpdate = [attempt, weak = weak(), inbox = std::make_shared<PairingInbox>()](
                              const PairingSession::Snapshot& snapshot) {
        if (!inbox->put(snapshot)) return;
        weak.run([attempt, inbox](AppModel& m) {
            for (const auto& latest : inbox->take()) m.pairingUpdate(attempt, latest);
        });
    };
    const auto session = supervisor_->beginPairing(joinURL, onUpdate);
    weak().run([attempt, session](AppModel& m) { m.pairingBegan(attempt, session); });
}

void AppModel::pairingBegan(PairingAttempt attempt, const std::expected<Session, PairingError>& session) {
    const bool isCurrent = isUnderWay(slot_) && wanted_ == attempt;
    if (!session) {
        if (!isCurrent) return;
        freeSlot();
        return refuse(messageFor(session.error()));
    }
    if (isCurrent) {
        session_ = *session;
        // Until the command has said a word there is something to show, and to cancel.
        if (!state_.pairing) pairingUpdate(attempt, (*session)->snapshot());
    } else if ((*session)->isInProgress()) {  // cancelled while it began
        nodeCalls_.call([late = *session] { late->cancel(); });
    }
}

void AppModel::pairingUpdate(PairingAttempt attempt, const PairingSession::Snapshot& snapshot) {
    if (!adopts(attempt, snapshot)) return;
    const bool isOver = !isInProgress(snapshot.phase);
    if (isOver) freeSlot();
    change([&](AppState& next) {
        next.pairing = snapshot;
        // That another link must wait is true until then.
        if (isOver || next.linkMessage == WindowTexts::checkingLink) next.linkMessage.reset();
        next.joined = home_->hasJoined();
    });
}

// Whether the snapshot is of the link that is worked on.
bool AppModel::adopts(PairingAttempt attempt, const PairingSession::Snapshot& snapshot) {
    const PairingSlots::Active active{attempt, snapshot.sessionID};
    if (slot_ == PairingSlot(PairingSlots::Starting{attempt})) slot_ = active;
    return slot_ == PairingSlot(active);
}

void AppModel::pairingFinished() {
    if (isUnderWay(slot_)) return;
    change([](AppState& next) { next.pairing.reset(); });
}

// What is said of a link that is being checked stays true.
void AppModel::dismissLinkMessage() {
    const bool checking = std::holds_alternative<PairingSlots::Starting>(slot_);
    change([&](AppState& next) {
        next.linkMessage = checking ? std::optional<std::string>(WindowTexts::checkingLink) : std::nullopt;
    });
}

void AppModel::confirmPairing() {
    if (!session_) return;
    nodeCalls_.call([session = session_] { session->confirm(); });
}

void AppModel::cancelPairing() {
    const auto session = freeSlot();
    change([](AppState& next) {
        next.pairing.reset();
        next.linkMessage.reset();
    });
    if (session) nodeCalls_.call([session] { session->cancel(); });
}

void AppModel::keepCurrentConnection() {
    change([](AppState& next) { next.replaceOffer.reset(); });
}

// Gives back the session that was worked on, if there is one yet.
AppModel::Session AppModel::freeSlot() {
    slot_ = PairingSlots::None{};
    wanted_ = 0;
    return std::exchange(session_, nullptr);
}

}  // namespace tarnik
