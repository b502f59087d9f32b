#include "core/foundation/TransferPace.h"

#include <algorithm>

namespace tarnik {

bool TransferPace::isFastEnough(std::int64_t received, TimePoint now) {
    if (!mark_) return true;
    const Seconds since = now - mark_->at;
    const double enough = static_cast<double>(floorBytesPerSecond_) * std::max(since, timeout_).count();
    if (static_cast<double>(received - mark_->received) >= enough) {
        mark_ = Mark{.at = now, .received = received};
        return true;
    }
    return since <= timeout_;
}

std::chrono::milliseconds TransferPace::untilStalled(TimePoint now) const {
    const Seconds left = mark_ ? timeout_ - Seconds(now - mark_->at) : Seconds(1);
    return std::chrono::floor<std::chrono::milliseconds>(std::clamp(left, Seconds(0), Seconds(1))) +
           std::chrono::milliseconds(1);
}

}  // namespace tarnik
