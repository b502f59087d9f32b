#include "app/AppDelegate.h"

#include <cstdlib>
#include <utility>

#include "app/NodeHomeOwner.h"
#include "app/model/WindowTexts.h"
#include "core/pairing/JoinLink.h"

namespace tarnik {

AppDelegate::AppDelegate(AppDelegateDeps deps, std::shared_ptr<AppModel> model)
    : deps_(std::move(deps)),
      model_(std::move(model)),
      feed_(model_, deps_.mainThread, [this](const AppState& state) { askAgain(state); }) {}

AppDelegate::~AppDelegate() {
    *self_ = nullptr;
}

void AppDelegate::willFinishLaunching() {
    deps_.events.onLink([self = self_](const std::string& link) {
        if (*self) (*self)->handleURL(link);
    });
}

void AppDelegate::didFinishLaunching() {
    deps_.relocateIfNeeded([self = self_](const RelocationOutcome& outcome) {
        if (*self) (*self)->relocated(outcome);
    });
}

void AppDelegate::relocated(const RelocationOutcome& outcome) {
    if (quitting_) return;
    if (std::holds_alternative<RelocationOutcomes::Moving>(outcome)) {
        if (pendingLink_) deps_.handLinkOn(*pendingLink_);
        return quit();
    }
    const auto* said = std::get_if<RelocationOutcomes::StayWithMessage>(&outcome);
    const auto message = said ? std::optional(*said) : std::nullopt;
    deps_.takeNodeHome([self = self_, message](const std::optional<std::string>& inUse) {
        if (!*self || (*self)->quitting_) return;
        if (inUse) return (*self)->refuse(*inUse);
        (*self)->launch(message);
    });
}

// From now on a later start is refused, too: it finds out by itself what is wrong.
void AppDelegate::refuse(const std::string& why) {
    quitting_ = true;
    model_->stop([why, shown = deps_.presentation] {
        shown.refuse(why, [end = shown.end] { end(NodeHomeOwner::inUseStatus); });
    });
}

void AppDelegate::launch(const std::optional<RelocationOutcomes::StayWithMessage>& message) {
    if (deps_.bundlePath == deps_.installPath) deps_.ensureLoginItem();
    updater_ = deps_.makeUpdater();
    deps_.presentation.makeStatusItem(
        MenuContent::with(updater_->isAvailable() ? UpdateCheck::available : UpdateCheck::unavailable));
    const auto handed = deps_.takeHandedLink();
    model_->start([self = self_] {
        if (*self) (*self)->modelStarted();
    });
    if (!model_->hasStarted()) model_->refreshSwitches();  // they are shown all the same
    updater_->setSampleSource([weak = std::weak_ptr(model_)](std::function<void(ActivitySample)> done) {
        if (const auto model = weak.lock()) model->activitySample(std::move(done));
    });
    if (handed && !linkCame_) handleURL(*handed);
    if (!windowOpen_ && (deps_.showsWindow || model_->state().needsAttention())) showWindow("open");
    if (message) deps_.presentation.showAlert(message->title, message->body);
    deps_.events.onSecondOpen([self = self_] {
        if (*self) (*self)->showWindow("secondOpen");
    });
    if (deps_.events.onReopen) {
        deps_.events.onReopen([self = self_] {
            if (*self) (*self)->reopen();
        });
    }
    deps_.events.onBecameActive([weak = std::weak_ptr(model_)] {
        if (const auto model = weak.lock()) model->refreshSwitches();
    });
}

void AppDelegate::modelStarted() {
    if (quitting_) return;
    modelStarted_ = true;
    if (const auto link = std::exchange(pendingLink_, std::nullopt)) connect(*link);
    if (deps_.takesLinks) deps_.takesLinks();
}

// At launch nobody knows yet whether the helper can be set up, and what it waits for.
void AppDelegate::askAgain(const AppState& state) {
    const bool setupEnded = !std::holds_alternative<Setups::Installing>(state.setup);
    const bool nodeReported = !std::holds_alternative<NodeStates::Stopped>(state.node);
    const bool asks = (setupEnded && !askedAfterSetup_) || (nodeReported && !askedAfterReport_);
    askedAfterSetup_ |= setupEnded;
    askedAfterReport_ |= nodeReported;
    if (asks && !windowOpen_ && !quitting_ && state.needsAttention()) showWindow("open");
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
    model_->pairingFinished();  // if it is over, how it ended was seen
    model_->dismissLinkMessage();
}

void AppDelegate::handleURL(const std::string& link) {
    if (quitting_ || !JoinLink::code(link, model_->webOrigin())) return;
    linkCame_ = true;
    if (modelStarted_) {
        connect(link);
    } else {
        pendingLink_ = link;
    }
    showWindow("open");
}

// The model forgets a link that it refuses; one that comes too early is good again in a moment.
void AppDelegate::connect(const std::string& link) {
    model_->connect(link, AppModel::Replacing::no);
    if (model_->state().linkMessage == WindowTexts::stillInstalling) deps_.presentation.fillLinkField(link);
}

// While quitting too: it then shows how that goes on.
void AppDelegate::showWindow(const std::string& reason) {
    windowOpen_ = true;
    deps_.recordWindow(reason);
    deps_.presentation.showWindow();
}

}  // namespace tarnik
