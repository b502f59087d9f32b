#pragma once

#include <string_view>

#include "core/switches/Switch.h"

namespace tarnik {

// The status of a privacy switch, as the window shows it.
enum class SwitchStatus {
    on,
    notYet,
    mayBeStale,  // off, although the settings may show the switch as on for an older copy
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

    // `accessibilityWasOnBefore` is true if Accessibility was ever on for any copy of the application.
    SwitchStatus status(Switch which, bool accessibilityWasOnBefore) const;

    bool operator==(const SwitchSnapshot&) const = default;
};

}  // namespace tarnik
