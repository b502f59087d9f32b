#pragma once

#include <optional>
#include <unordered_set>

#include "core/foundation/Time.h"
#include "core/updates/ActivitySample.h"

namespace tarnik {

// The cap: the time after which the system ends a keep-awake holder.
namespace KeepAwakeCap {

inline constexpr Seconds maxHold{3600};
// A holder that ran for at least maxHold - margin counts as ended by the cap.
inline constexpr Seconds margin{120};

}  // namespace KeepAwakeCap

// Decides from samples whether the helper node, the driver and this application have been quiet for long
// enough to install an update. A value, owned by an UpdateLoop.
struct QuietWatch {
    static constexpr Seconds defaultQuietFor{600};
    static constexpr double defaultDriverAllowancePerMinute = 0.25;
    static constexpr Seconds sampleEvery{60};

    struct Driver {
        pid_t pid = 0;
        double cpuSeconds = 0;
        TimePoint at;

        bool operator==(const Driver&) const = default;
    };

    Seconds quietFor = defaultQuietFor;
    double driverAllowancePerMinute =
        defaultDriverAllowancePerMinute;     // an idle driver uses at most these processor seconds a minute
    std::optional<TimePoint> watchingSince;  // the time of the first sample since a reset
    std::optional<TimePoint> lastBusy;
    std::optional<Driver> lastDriver;  // from the last sample; std::nullopt if that had no time of the driver
    std::optional<pid_t> holdersNode;  // the node of holdersSeen
    std::unordered_set<KeepAwakeHolder::Seen> holdersSeen;
    // Set when the cap ended a holder, because the node's work may continue without one. While it is set, the
    // node counts as busy. The value is the earliest start of the next holder. Cleared when a holder starts
    // after it, KeepAwakeCap::maxHold after it, or when the node is replaced.
    std::optional<ActivitySample::Moment> stretchMayContinueUntilHolderAfter;

    void observe(const ActivitySample& sample);

    // Returns true if the current quiet stretch is at least quietFor long.
    bool isQuiet(TimePoint now) const;

    // Returns the start of the current quiet stretch, or std::nullopt before the first sample after a reset.
    std::optional<TimePoint> quietSince() const;

    // Starts a new quiet stretch at the next sample. Keeps the data about the driver and the holders.
    void reset();

    bool operator==(const QuietWatch&) const = default;

private:
    void forgetLapsedMark(TimePoint now);
    void followHolders(const ActivitySample& sample);
    bool driverIsBusy(const ActivitySample& sample);
};

}  // namespace tarnik
