#pragma once

#include <array>

#include "core/foundation/Time.h"

namespace tarnik {

using namespace std::chrono_literals;

// How long to wait before the node is started again: longer after each end, and short again once a run was
// long enough to count as healthy.
struct RestartBackoff {
    static constexpr std::array<Seconds, 7> delays{1s, 2s, 4s, 8s, 16s, 30s, 60s};
    static constexpr Seconds healthyAfter = 60s;
    int attempt = 0;

    // The delay after a run of `ranFor`.
    Seconds next(Seconds ranFor);
    void reset() { attempt = 0; }

    bool operator==(const RestartBackoff&) const = default;
};

}  // namespace tarnik
