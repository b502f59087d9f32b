#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/foundation/WallTime.h"

namespace tarnik {

// Several failures of the helper in a row. They end when the helper has run for RestartBackoff::healthyAfter.
struct HelperTrouble {
    enum class Kind { stopped, notStarted };

    Kind kind = Kind::stopped;
    std::int64_t times = 0;
    std::string last;  // of the last failure: "exit 3" or the reason why the helper couldn't be started
    WallTime at;       // of the last failure
    std::optional<WallTime> nextTry = {};
    bool isRunning = false;  // again, but not yet for long

    // Returns sentences for the user: what failed, how long ago, and when the helper is started again or that
    // it runs.
    std::string sentenceAt(WallTime now) const;

    bool operator==(const HelperTrouble&) const = default;
};

}  // namespace tarnik
