#include "app/platform/linux/LinuxSwitches.h"

#include <chrono>
#include <utility>

#include "app/platform/linux/DesktopPortal.h"
#include "app/platform/linux/SettingsProgram.h"

namespace tarnik {
namespace {

// The time limit for the first replies. A portal may have to be started.
constexpr std::chrono::seconds knownLimit(2);

}  // namespace

LinuxSwitches::LinuxSwitches(const QDBusConnection& bus, const Environment& environment,
                             const std::string& userFolder)
    : environment_(environment), display_(displayOf(environment)), bus_(bus, [this] { update(); }) {
    reported_ = {.accessibility = false, .screenRecording = display_ == Display::x11};
    if (display_ != Display::wayland) return;
    registerWithPortal(bus);
    permission_ = std::make_unique<ScreenPermission>(bus, [this] { update(); });
    std::vector<std::string> folders{userFolder, "/tmp"};
    if (auto runtime = environmentValue(environment, "XDG_RUNTIME_DIR"); !runtime.empty())
        folders.push_back(runtime);
    prompter_ = std::make_unique<ScreenPrompt>(bus, std::move(folders));
}

LinuxSwitches::Display LinuxSwitches::displayOf(const Environment& environment) {
    if (!environmentValue(environment, "WAYLAND_DISPLAY").empty()) return Display::wayland;
    return environmentValue(environment, "DISPLAY").empty() ? Display::none : Display::x11;
}

bool LinuxSwitches::isOn(Switch which) const {
    if (which == Switch::accessibility) return bus_.isOn();
    return permission_ ? permission_->isOn() : display_ == Display::x11;
}

void LinuxSwitches::whenKnown(std::function<void()> handler) {
    if (areKnown()) return handler();
    known_ = std::move(handler);
    knownTimeout_.setSingleShot(true);
    knownTimeout_.callOnTimeout([this] { notifyKnown(); });
    knownTimeout_.start(knownLimit);
}

void LinuxSwitches::update() {
    const SwitchSnapshot now{.accessibility = isOn(Switch::accessibility),
                             .screenRecording = isOn(Switch::screenRecording)};
    if (std::exchange(reported_, now) != now && changed_) changed_();
    if (areKnown()) notifyKnown();
}

void LinuxSwitches::notifyKnown() {
    knownTimeout_.stop();
    if (const auto handler = std::exchange(known_, nullptr)) handler();
}

bool LinuxSwitches::prompt(Switch which) {
    if (isOn(which)) return true;
    const bool canPrompt = which == Switch::accessibility || prompter_ != nullptr;
    if (!canPrompt || std::exchange(promptFor(which).isOpen, true)) return false;
    const auto onDone = [this, which](bool accepted) { promptEnded(which, accepted); };
    if (which == Switch::accessibility) {
        bus_.turnOn(onDone);
    } else {
        prompter_->ask(onDone);
    }
    return false;
}

void LinuxSwitches::openSettings(Switch which) {
    if (promptFor(which).isOpen) {
        promptFor(which).wantsSettings = true;
    } else {
        openSettingsProgram(which, environment_);
    }
}

void LinuxSwitches::promptEnded(Switch which, bool accepted) {
    if (which == Switch::screenRecording) permission_->prompted(accepted);
    const Prompt ended = std::exchange(promptFor(which), {});
    if (ended.wantsSettings && !accepted) openSettingsProgram(which, environment_);
}

}  // namespace tarnik
