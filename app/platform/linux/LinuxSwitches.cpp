#include "app/platform/linux/LinuxSwitches.h"

#include <chrono>
#include <utility>

#include "app/platform/linux/DesktopPortal.h"
#include "app/platform/linux/SettingsProgram.h"

namespace tarnik {
namespace {

// For the first answers: a portal may have to be started.
constexpr std::chrono::seconds longestWait(2);

}  // namespace

LinuxSwitches::LinuxSwitches(const QDBusConnection& bus, const Environment& environment,
                             const std::string& userFolder)
    : environment_(environment), display_(displayOf(environment)), bus_(bus, [this] { tell(); }) {
    told_ = {.accessibility = false, .screenRecording = display_ == Display::x11};
    if (display_ != Display::wayland) return;
    registerWithPortal(bus);
    portal_ = std::make_unique<ScreenPermission>(bus, [this] { tell(); });
    std::vector<std::string> folders{userFolder, "/tmp"};
    if (auto runtime = environmentValue(environment, "XDG_RUNTIME_DIR"); !runtime.empty())
        folders.push_back(runtime);
    prompt_ = std::make_unique<ScreenPrompt>(bus, std::move(folders));
}

LinuxSwitches::Display LinuxSwitches::displayOf(const Environment& environment) {
    if (!environmentValue(environment, "WAYLAND_DISPLAY").empty()) return Display::wayland;
    return environmentValue(environment, "DISPLAY").empty() ? Display::none : Display::x11;
}

bool LinuxSwitches::isOn(Switch which) const {
    if (which == Switch::accessibility) return bus_.isOn();
    return portal_ ? portal_->isOn() : display_ == Display::x11;
}

void LinuxSwitches::whenKnown(std::function<void()> handler) {
    if (areKnown()) return handler();
    known_ = std::move(handler);
    patience_.setSingleShot(true);
    patience_.callOnTimeout([this] { tellKnown(); });
    patience_.start(longestWait);
}

void LinuxSwitches::tell() {
    const SwitchSnapshot now{.accessibility = isOn(Switch::accessibility),
                             .screenRecording = isOn(Switch::screenRecording)};
    if (std::exchange(told_, now) != now && changed_) changed_();
    if (areKnown()) tellKnown();
}

void LinuxSwitches::tellKnown() {
    patience_.stop();
    if (const auto handler = std::exchange(known_, nullptr)) handler();
}

bool LinuxSwitches::prompt(Switch which) {
    if (isOn(which)) return true;
    const bool canAsk = which == Switch::accessibility || prompt_ != nullptr;
    if (!canAsk || std::exchange(asking(which).isUnderWay, true)) return false;
    const auto onDone = [this, which](bool done) { prompted(which, done); };
    if (which == Switch::accessibility) {
        bus_.turnOn(onDone);
    } else {
        prompt_->ask(onDone);
    }
    return false;
}

void LinuxSwitches::openSettings(Switch which) {
    if (asking(which).isUnderWay) {
        asking(which).wantsSettings = true;
    } else {
        openSettingsProgram(which, environment_);
    }
}

void LinuxSwitches::prompted(Switch which, bool done) {
    if (which == Switch::screenRecording) portal_->answered(done);
    const Asking asked = std::exchange(asking(which), {});
    if (asked.wantsSettings && !done) openSettingsProgram(which, environment_);
}

}  // namespace tarnik
