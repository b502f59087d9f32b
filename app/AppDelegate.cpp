#include "app/AppDelegate.h"

#include <utility>

#include "core/pairing/JoinLink.h"

namespace tarnik {

AppDelegate::AppDelegate(AppDelegateDeps deps, std::shared_ptr<AppModel> model)
    : deps_(std::move(deps)), model_(std::move(model)) {}

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
    if (std::holds_alternative<RelocationOutcomes::Moving>(outcome)) return quit();
    const auto* message = std::get_if<RelocationOutcomes::StayWithMessage>(&outcome);
    launch(message ? std::optional(*message) : std::nullopt);
}

void AppDelegate::launch(const std::optional<RelocationOutcomes::StayWithMessage>& message) {
    if (deps_.bundlePath == deps_.installPath) deps_.ensureLoginItem();
    updater_ = deps_.makeUpdater();
    deps_.presentation.makeStatusItem(
        MenuContent::with(updater_->isAvailable() ? UpdateCheck::available : UpdateCheck::unavailable));
    model_->start();
    if (!model_->hasStarted()) model_->refreshSwitches();  // they are shown all the same
    updater_->setSampleSource([weak = std::weak_ptr(model_)](std::function<void(ActivitySample)> done) {
        if (const auto model = weak.lock()) model->activitySample(std::move(done));
    });
    if (const auto link = std::exchange(pendingLink_, std::nullopt)) {
        model_->connect(*link, AppModel::Replacing::no);
    }
    if (model_->needsAttention()) showWindow("open");
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

void AppDelegate::checkForUpdates() {
    if (updater_) updater_->checkForUpdates();
}

void AppDelegate::quit() {
    if (std::exchange(quitting_, true)) return;
    if (updater_) updater_->appWillQuit();
    model_->stop([end = deps_.presentation.end] { end(); });
}

void AppDelegate::handleURL(const std::string& link) {
    if (quitting_ || !JoinLink::code(link, model_->webOrigin())) return;
    if (model_->hasStarted()) {
        model_->connect(link, AppModel::Replacing::no);
    } else {
        pendingLink_ = link;
    }
    showWindow("open");
}

// While quitting too: it then shows how that goes on.
void AppDelegate::showWindow(const std::string& reason) {
    deps_.recordWindow(reason);
    deps_.presentation.showWindow();
}

}  // namespace tarnik
