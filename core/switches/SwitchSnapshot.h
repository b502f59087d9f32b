#pragma once

#include <string_view>

#include "core/switches/Switch.h"

namespace tarnik {

// What the window shows about a privacy switch.
enum class SwitchStatus {
    on,
    notYet,
    mayBeStale,  // the settings may show it on, but for an older copy of the application
};

// The privacy switches as the system reported them at one moment.
struct SwitchSnapshot {
    bool accessibility = false;
    bool screenRecording = false;

    // The hint that the window shows beside a switch that may be stale.
    static constexpr std::string_view staleHint =
        "If tarnik already looks switched on in Accessibility, select it, remove it with \u2212, then add "
        "/Applications/tarnik.app again and reopen tarnik.";

    bool allOn() const { return accessibility && screenRecording; }

    // `accessibilityWasOnBefore` is true if any copy of the application ever saw Accessibility on.
    SwitchStatus status(Switch which, bool accessibilityWasOnBefore) const;

    bool operator==(const SwitchSnapshot&) const = default;
};

}  // namespace tarnik
