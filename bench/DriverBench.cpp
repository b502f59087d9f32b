#include <algorithm>
#include <stdexcept>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "core/driver/DriverHost.h"
#include "core/process/Spawner.h"
#include "tests/support/TemporaryFolder.h"

// Measures the time from the request for a driver to its published endpoint. The floor is the stand-in's own
// time until it listens. The host probes at once and then every 50 ms; "later_looks" is the share of starts
// that the first probe missed.

namespace tarnik {
namespace {

using namespace std::chrono_literals;

const std::string standIn = TARNIK_CHILDREN_DIR "/../driver/cua-driver";
const std::string bundleID = "app.tarnik.bench";

double millisecondsSince(TimePoint start) {
    return std::chrono::duration<double, std::milli>(steadyNow() - start).count();
}

double hosted(const TemporaryFolder& folder) {
    std::optional<TimePoint> published;
    DriverHost host(
        {.executable = standIn,
         .applicationSupport = folder.path(),
         .hostBundleID = bundleID,
         .inherited = {}},
        DriverHostDeps::production(), [](const std::string&) {},
        [&published](const auto& endpoint) {
            if (endpoint) published = steadyNow();
        });
    const TimePoint start = steadyNow();
    host.setEnabled(true);
    if (!published) throw std::runtime_error("the driver didn't become ready");
    return std::chrono::duration<double, std::milli>(*published - start).count();
}

// The floor: the bare program, probed in a busy loop.
double alone(const TemporaryFolder& folder) {
    const std::string socketPath = folder.path() + "/s";
    const auto launch = DriverLaunch::make({.executable = standIn,
                                            .socketPath = socketPath,
                                            .hostBundleID = bundleID,
                                            .hostPID = ::getpid(),
                                            .inherited = {}});
    const TimePoint start = steadyNow();
    auto liveness = Spawner::pipe();
    const auto child = Spawner::spawn({.executable = launch.executable,
                                       .arguments = launch.arguments,
                                       .environment = launch.environment,
                                       .standardInput = Stdio::fd(liveness->readEnd.get())});
    if (!child) throw std::runtime_error(describe(child.error()));
    while (!DriverSocketDirectory::acceptsConnections(socketPath)) {
        if (!(*child)->isRunning()) throw std::runtime_error("the stand-in left");
        std::this_thread::sleep_for(100us);
    }
    const double took = millisecondsSince(start);
    liveness->writeEnd.reset();
    (*child)->waitForExit(10s);
    return took;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void driverStartToEndpoint(benchmark::State& state) {
    const TemporaryFolder folder;
    std::vector<double> ours, floor;
    for (auto iteration : state) {
        (void)iteration;
        ours.push_back(hosted(folder));
        floor.push_back(alone(folder));
        state.SetIterationTime(ours.back() / 1e3);
    }
    state.counters["ms"] = median(ours);
    state.counters["floor_ms"] = median(floor);
    const auto missed = std::count_if(ours.begin(), ours.end(), [](double took) { return took > 50; });
    state.counters["later_looks"] = static_cast<double>(missed) / static_cast<double>(ours.size());
}
BENCHMARK(driverStartToEndpoint)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarnik
