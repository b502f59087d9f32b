#pragma once

#include <array>

#include "core/foundation/Time.h"

namespace tarnik {

using namespace std::chrono_literals;

// The delays before restarts of the node. The delay grows with each exit up to 60 s. A run of at least
// `healthyAfter` resets the delay.
struct RestartBackoff {
    static constexpr std::array<Seconds, 7> delays{1s, 2s, 4s, 8s, 16s, 30s, 60s};
    static constexpr Seconds healthyAfter = 60s;
    int attempt = 0;

    // Returns the delay after a run of `ranFor`.
    Seconds next(Seconds ranFor);
    void reset() { attempt = 0; }

    bool operator==(const RestartBackoff&) const = default;
};

}  // namespace tarnik
