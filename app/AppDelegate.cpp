#include "app/AppDelegate.h"

#include <cstdlib>
#include <utility>

#include "app/options/ExitCode.h"
#include "app/texts/LinkTexts.h"

namespace tarnik {

AppDelegate::AppDelegate(AppDelegateDeps deps, std::shared_ptr<AppModel> model)
    : deps_(std::move(deps)),
      model_(std::move(model)),
      feed_(model_, deps_.mainThread, [this](const AppState& state) { stateChanged(state); }) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::willFinishLaunching() {
    deps_.events.onLink(guard_.wrap([this](const std::string& link) { handleURL(link); }));
}

void AppDelegate::didFinishLaunching() {
    showIfRelocationWaits();
    deps_.relocateIfNeeded(guard_.wrap([this](const RelocationOutcome& outcome) { relocated(outcome); }));
}

// The relocator may wait for the user, because the system asks before a program reads the Downloads folder.
// The window then explains which program asks. Only a copy outside its install path is moved.
void AppDelegate::showIfRelocationWaits() {
    if (!deps_.bundlePath || deps_.bundlePath == deps_.installPath) return;
    relocationTimer_ = deps_.mainThread.repeat(deps_.relocationPatience, [this] {
        relocationTimer_.reset();
        if (!windowOpen_ && !quitting_) showWindow("open");
    });
}

void AppDelegate::relocated(const RelocationOutcome& outcome) {
    relocationTimer_.reset();
    if (quitting_) return;
    if (std::holds_alternative<RelocationOutcomes::Moving>(outcome)) {
        moving_ = true;
        if (pendingLink_) deps_.handLinkOn(pendingLink_->link);
        return quit();
    }
    const auto* said = std::get_if<RelocationOutcomes::StayWithMessage>(&outcome);
    const auto message = said ? std::optional(*said) : std::nullopt;
    deps_.takeNodeHome(guard_.wrap([this, message](const std::optional<std::string>& inUse) {
        if (quitting_) return;
        if (inUse) return refuse(*inUse);
        launch(message);
    }));
}

// Once the model has stopped, this copy refuses later starts. Each later start then detects the conflict
// itself.
void AppDelegate::refuse(const std::string& why) {
    quitting_ = true;
    model_->stop([why, shown = deps_.presentation] {
        shown.refuse(why, [end = shown.end] { end(exitStatus(ExitCode::homeInUse)); });
    });
}

void AppDelegate::launch(const std::optional<RelocationOutcomes::StayWithMessage>& message) {
    if (deps_.bundlePath == deps_.installPath) deps_.ensureLoginItem();
    updater_ = deps_.makeUpdater();
    deps_.presentation.makeStatusItem(
        MenuContent::with(updater_->offersCheck() ? UpdateCheck::available : UpdateCheck::unavailable));
    const auto handed = deps_.takeHandedLink();
    const bool hasNewerLink = pendingLink_.has_value();
    model_->start(guard_.wrap([this] { modelStarted(); }));
    if (!model_->hasStarted()) model_->refreshSwitches();  // the window always shows the switches
    updater_->setSampleSource(
        [this](std::function<void(ActivitySample)> done) { model_->activitySample(std::move(done)); });
    if (handed && !hasNewerLink) handleURL(*handed);
    if (!windowOpen_ && (deps_.showsWindow || model_->state().needsAttention())) showWindow("open");
    if (message) deps_.presentation.showAlert(message->title, message->body);
    deps_.events.onSecondOpen(guard_.wrap([this] { showWindow("secondOpen"); }));
    if (deps_.events.onReopen) deps_.events.onReopen(guard_.wrap([this] { reopen(); }));
    deps_.events.onBecameActive(guard_.wrap([this] {
        model_->refreshSwitches();
        model_->loginItem().refresh();
    }));
}

void AppDelegate::modelStarted() {
    if (quitting_) return;
    modelStarted_ = true;
    if (const auto link = std::exchange(pendingLink_, std::nullopt)) connect(*link);
    if (deps_.takesLinks) deps_.takesLinks();
}

// Checks again whether the user has to act, because launch() runs before the setup has ended and before the
// supervisor has reported.
void AppDelegate::stateChanged(const AppState& state) {
    const bool setupEnded = !std::holds_alternative<Setups::Installing>(state.setup);
    const bool nodeReported = !std::holds_alternative<NodeStates::Stopped>(state.node);
    const bool isNew = (setupEnded && !checked_.afterSetup) || (nodeReported && !checked_.afterNodeReport);
    checked_.afterSetup |= setupEnded;
    checked_.afterNodeReport |= nodeReported;
    if (isNew && !windowOpen_ && !quitting_ && state.needsAttention() && !isNoticed(state))
        showWindow("open");
}

// A window that the user has closed is not opened for a failure that a notice reports.
bool AppDelegate::isNoticed(const AppState& state) const {
    const auto& showsNotices = deps_.presentation.showsNotices;
    return windowWasClosed_ && std::holds_alternative<Setups::Failed>(state.setup) && showsNotices &&
           showsNotices();
}

void AppDelegate::checkForUpdates() {
    if (updater_) updater_->checkForUpdates();
}

void AppDelegate::quit() {
    if (std::exchange(quitting_, true)) return;
    if (updater_) updater_->appWillQuit();
    model_->stop([end = deps_.presentation.end] { end(EXIT_SUCCESS); });
}

void AppDelegate::windowClosed() {
    windowOpen_ = false;
    windowWasClosed_ = true;
    model_->pairing().dismissOutcome();
    model_->pairing().dismissMessage();
    model_->loginItem().dismissFailure();
}

void AppDelegate::handleURL(const std::string& link) {
    const auto code = JoinLink::code(link, model_->webOrigin());
    if (!code) return;
    if (moving_) return deps_.handLinkOn(code->link);
    if (quitting_) return;
    if (modelStarted_) {
        connect(*code);
    } else {
        pendingLink_ = code;
    }
    showWindow("open");
}

// The model drops a refused link. A link that arrives during the install is put into the link field.
void AppDelegate::connect(const JoinCode& code) {
    model_->pairing().connect(code, LinkPairing::Replacing::no);
    if (model_->state().linkMessage == LinkTexts::stillInstalling)
        deps_.presentation.fillLinkField(code.link);
}

// Also works while the program quits. The window then shows that the program stops.
void AppDelegate::showWindow(const std::string& reason) {
    windowOpen_ = true;
    deps_.recordWindow(reason);
    model_->loginItem().refresh();
    deps_.presentation.showWindow();
}

}  // namespace tarnik
