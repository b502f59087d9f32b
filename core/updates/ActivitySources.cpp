#include "core/updates/ActivitySources.h"

#include <utility>

#include "core/process/MacProcesses.h"

namespace tarnik {

namespace {

std::optional<std::vector<KeepAwakeHolder::Seen>> holdersOf(const ActivitySources& from,
                                                            std::optional<pid_t> node) {
    if (!node) return std::vector<KeepAwakeHolder::Seen>{};
    const auto processes = from.processesUnder(*node);
    if (!processes) return std::nullopt;
    return KeepAwakeHolder::seen(*node, *processes, from.holderPath);
}

}  // namespace

ActivitySources ActivitySources::production(RunningPID nodePID, RunningPID driverPID) {
    return {.nodePID = std::move(nodePID),
            .driverPID = std::move(driverPID),
            .processesUnder = MacProcesses::tableUnder,
            .cpuSeconds = MacProcesses::cpuSeconds,
            .now = ActivitySample::Moment::now};
}

ActivitySample ActivitySources::sample(OwnActivity own) const {
    ActivitySample sample{.driverPID = driverPID(),
                          .settingUp = own.settingUp,
                          .nodePID = nodePID(),
                          .windowInUse = own.windowInUse};
    sample.holders = holdersOf(*this, sample.nodePID);
    if (sample.holders) sample.nodeHoldsAwake = !sample.holders->empty();
    if (sample.driverPID) sample.driverCPUSeconds = cpuSeconds(*sample.driverPID);
    sample.at = now();
    return sample;
}

}  // namespace tarnik
