#include "app/CommandLineDeps.h"

#include <utility>

namespace tarnik {

AppModelDeps modelDeps(const CommandLine& line, AppPlatform platform, const BackgroundTasks& work) {
    auto deps = AppModelDeps::production(std::move(platform), work);
    deps.supervisor.connectedAfter = line.connectedAfter;
    if (line.keepAwake) {
        deps.activity = [path = *line.keepAwake](auto nodePID, auto driverPID) {
            auto sources = ActivitySources::production(std::move(nodePID), std::move(driverPID));
            sources.holderPath = path;
            return sources;
        };
    }
    return deps;
}

}  // namespace tarnik
