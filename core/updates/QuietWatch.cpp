#include "core/updates/QuietWatch.h"

#include <algorithm>

namespace tarnik {

namespace {

using Mark = std::optional<ActivitySample::Moment>;

// A holder that ran this long was ended by the cap, not by the end of the work.
constexpr auto cappedAfter =
    std::chrono::duration_cast<ProcessClock::duration>(KeepAwakeCap::maxHold - KeepAwakeCap::margin);

// Returns the earliest start of a successor of the ended holder. Returns std::nullopt if the cap did not end
// the holder.
Mark markOf(const KeepAwakeHolder::Seen& ended, const ActivitySample::Moment& at) {
    const auto ranFor = at.process - ended.started;
    if (ranFor < cappedAfter) return std::nullopt;
    const auto ago = std::chrono::duration_cast<TimePoint::duration>(ranFor - cappedAfter);
    return ActivitySample::Moment{.steady = at.steady - ago, .process = ended.started + cappedAfter};
}

Mark later(const Mark& one, const Mark& other) {
    if (!one || !other) return one ? one : other;
    return ActivitySample::Moment{.steady = std::max(one->steady, other->steady),
                                  .process = std::max(one->process, other->process)};
}

}  // namespace

void QuietWatch::observe(const ActivitySample& sample) {
    if (!watchingSince) watchingSince = sample.at.steady;
    forgetLapsedMark(sample.at.steady);
    followHolders(sample);
    const bool driverBusy = driverIsBusy(sample);
    const bool nodeBusy = sample.nodeHoldsAwake.value_or(true) || stretchMayContinueUntilHolderAfter;
    if (sample.settingUp || sample.windowInUse || nodeBusy || driverBusy) lastBusy = sample.at.steady;
}

// Uses the steady clock, so that setting the wall clock back doesn't delay updates.
void QuietWatch::forgetLapsedMark(TimePoint now) {
    const auto& mark = stretchMayContinueUntilHolderAfter;
    if (mark && now - mark->steady >= KeepAwakeCap::maxHold) stretchMayContinueUntilHolderAfter.reset();
}

void QuietWatch::followHolders(const ActivitySample& sample) {
    if (!sample.holders) return;
    auto& mark = stretchMayContinueUntilHolderAfter;
    if (sample.nodePID != holdersNode) {
        mark.reset();
        holdersSeen.clear();
        holdersNode = sample.nodePID;
    }

    const std::unordered_set<KeepAwakeHolder::Seen> running(sample.holders->begin(), sample.holders->end());
    for (const auto& holder : holdersSeen)
        if (!running.contains(holder)) mark = later(mark, markOf(holder, sample.at));

    const auto succeeds = [&](const auto& holder) { return holder.started > mark->process; };
    if (mark && std::ranges::any_of(running, succeeds)) mark.reset();
    holdersSeen = running;
}

bool QuietWatch::driverIsBusy(const ActivitySample& sample) {
    if (!sample.driverPID || !sample.driverCPUSeconds) {
        lastDriver.reset();
        return false;
    }
    const auto before = lastDriver;
    lastDriver = {*sample.driverPID, *sample.driverCPUSeconds, sample.at.steady};
    if (!before) return false;
    if (before->pid != lastDriver->pid) return true;  // a replaced driver means that work is going on
    const Seconds elapsed = std::max<Seconds>(lastDriver->at - before->at, Seconds(1));
    return lastDriver->cpuSeconds - before->cpuSeconds > driverAllowancePerMinute * elapsed.count() / 60;
}

bool QuietWatch::isQuiet(TimePoint now) const {
    const auto since = quietSince();
    return since && now - *since >= quietFor;
}

std::optional<TimePoint> QuietWatch::quietSince() const {
    return lastBusy ? lastBusy : watchingSince;
}

void QuietWatch::reset() {
    watchingSince.reset();
    lastBusy.reset();
}

}  // namespace tarnik
