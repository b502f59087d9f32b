#pragma once

#include <QDBusConnection>
#include <QTimer>
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

// The two switches, as the desktop that `environment` tells of has them. Reading one sends nothing.
//
// Main thread. On X11 any program may look at the screen; without a display there is none to look at.
class LinuxSwitches {
public:
    LinuxSwitches(const QDBusConnection& bus, const Environment& environment, const std::string& userFolder);

    bool isOn(Switch which) const;

    // Calls `handler` once, when the desktop has answered or takes too long.
    void whenKnown(std::function<void()> handler);

    // Accessibility is turned on as it was asked for; for the screen the portal asks.
    bool prompt(Switch which);

    // Once a prompt has come to its end, and only when it didn't turn the switch on.
    void openSettings(Switch which);

    // What is called, from the event loop, when isOn may have changed.
    void onChange(std::function<void()> handler) { changed_ = std::move(handler); }

private:
    enum class Display { x11, wayland, none };
    struct Asking {
        bool isUnderWay = false;
        bool wantsSettings = false;
    };

    static Display displayOf(const Environment& environment);
    void prompted(Switch which, bool done);
    Asking& asking(Switch which) { return which == Switch::accessibility ? accessibility_ : screen_; }
    bool areKnown() const { return bus_.isKnown() && (!portal_ || portal_->isKnown()); }
    void tell();
    void tellKnown();

    const Environment environment_;
    const Display display_;
    std::function<void()> changed_;
    SwitchSnapshot told_;
    std::function<void()> known_;  // until it was called
    QTimer patience_;              // with the desktop's first answers
    Asking accessibility_;
    Asking screen_;
    AccessibilityBus bus_;
    std::unique_ptr<ScreenPermission> portal_;  // on Wayland only
    std::unique_ptr<ScreenPrompt> prompt_;
};

}  // namespace tarnik
