#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "core/foundation/Time.h"

namespace tarnik {

// Decides whether a transfer is too slow. The average rate over each period of `timeout` must be at least
// `floorBytesPerSecond`. libcurl's own speed limit uses the last five seconds only, so occasional bursts
// evade that limit. The steady clock stops while the machine sleeps, so a transfer that slept isn't stalled.
//
// Belongs to one transfer.
class TransferPace {
public:
    TransferPace(Seconds timeout, std::int64_t floorBytesPerSecond)
        : timeout_(timeout), floorBytesPerSecond_(floorBytesPerSecond) {}

    void reset() { mark_.reset(); }  // not connected
    void connected(TimePoint now) { mark_ = Mark{.at = now}; }
    bool isConnected() const { return mark_.has_value(); }

    // Returns false if the transfer is stalled. `received` is the number of bytes since connected().
    bool isFastEnough(std::int64_t received, TimePoint now);

    // Returns the time until the transfer may count as stalled, rounded up and limited to about a second.
    // Before the connection, libcurl itself checks the time-out.
    std::chrono::milliseconds untilStalled(TimePoint now) const;

private:
    // The last moment at which the transfer was fast enough, and the number of bytes received by then.
    struct Mark {
        TimePoint at;
        std::int64_t received = 0;
    };

    const Seconds timeout_;
    const std::int64_t floorBytesPerSecond_;
    std::optional<Mark> mark_;  // std::nullopt until connected
};

}  // namespace tarnik
