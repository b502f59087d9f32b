#pragma once

namespace tarnik {

// What the window says about a privacy switch.
enum class SwitchStatus {
    on,
    notYet,
    mayBeStale,  // the settings may show it on, but for an older copy of the application
};

}  // namespace tarnik
