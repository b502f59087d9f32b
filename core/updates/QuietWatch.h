#pragma once

#include <optional>
#include <unordered_set>

#include "core/foundation/Time.h"
#include "core/updates/ActivitySample.h"

namespace tarnik {

// Tells from samples whether the machine's agent work, and the person in our window, have been quiet for
// long enough. A value; belongs to one UpdateLoop.
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
        defaultDriverAllowancePerMinute;     // processor seconds that are idle still
    std::optional<TimePoint> watchingSince;  // the first sample since a reset
    std::optional<TimePoint> lastBusy;
    std::optional<Driver> lastDriver;  // of the last sample that had its processor time
    std::optional<pid_t> holdersNode;  // whose holders are followed
    std::unordered_set<KeepAwakeHolder::Seen> holdersSeen;
    // Set while the node's work is taken to go on although its holder was ended by the cap: until a holder
    // starts after this moment, or none has for another KeepAwakeCap::maxHold, or the node is another one.
    std::optional<ActivitySample::Moment> stretchMayContinueUntilHolderAfter;

    void observe(const ActivitySample& sample);

    // A whole quiet stretch was watched, and nothing in it was busy.
    bool isQuiet(TimePoint now) const;

    // When the quiet stretch began that may still go on; none before the first sample.
    std::optional<TimePoint> quietSince() const;

    // Counts the quiet stretch anew, from the next sample. What is known of driver and holders stays.
    void reset();

    bool operator==(const QuietWatch&) const = default;

private:
    void forgetLapsedMark(TimePoint now);
    void followHolders(const ActivitySample& sample);
    bool driverIsBusy(const ActivitySample& sample);
};

}  // namespace tarnik
