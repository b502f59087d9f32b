#pragma once

#include <QDBusConnection>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/platform/SwitchOperations.h"
#include "app/platform/linux/AccessibilityBus.h"
#include "app/platform/linux/ScreenPermission.h"
#include "app/platform/linux/ScreenPrompt.h"
#include "core/process/Environment.h"
#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

// The two switches of a Linux desktop. D-Bus signals update their states, so a read sends no message.
//
// Main thread only. On X11 every program may read the screen, so Screen Recording is always on. Without a
// display Screen Recording is off.
class LinuxSwitches {
public:
    // `environment` names the display and the desktop.
    LinuxSwitches(const QDBusConnection& bus, const Environment& environment, const std::string& userFolder);

    bool isOn(Switch which) const;

    // Calls `handler` once, when the desktop has replied or a time-out of 2 s has passed. Calls it before
    // whenKnown() returns if the desktop has already replied.
    void whenKnown(std::function<void()> handler);

    // Turns Accessibility on, or asks the user through the portal for Screen Recording. Returns true if the
    // switch is already on.
    bool prompt(Switch which);

    // Opens the settings program. If a prompt is open, the program is opened when the prompt ends, and only
    // if the user did not accept.
    void openSettings(Switch which);

    // Sets the handler that the event loop calls when isOn may have changed.
    void onChange(std::function<void()> handler) { changed_ = std::move(handler); }

private:
    enum class Display { x11, wayland, none };
    struct Prompt {
        bool isOpen = false;
        bool wantsSettings = false;
    };

    static Display displayOf(const Environment& environment);
    void promptEnded(Switch which, bool accepted);
    Prompt& promptFor(Switch which) { return prompts_.at(which == Switch::accessibility ? 0 : 1); }
    bool areKnown() const { return bus_.isKnown() && (!permission_ || permission_->isKnown()); }
    void update();
    void notifyKnown();

    const Environment environment_;
    const Display display_;
    std::function<void()> changed_;
    SwitchSnapshot reported_;
    std::function<void()> known_;  // the waiting handler of whenKnown(), or null
    QTimer knownTimeout_;
    std::array<Prompt, 2> prompts_;
    AccessibilityBus bus_;
    std::unique_ptr<ScreenPermission> permission_;  // Wayland only
    std::unique_ptr<ScreenPrompt> prompter_;        // Wayland only
};

}  // namespace tarnik
