#include <thread>
#include <utility>

#include "core/driver/DriverHost.h"
#include "core/process/Spawner.h"

namespace tarnik {

DriverHostDeps DriverHostDeps::production(AttachOutput attachOutput) {
    DriverHostDeps deps;
    deps.launch = [attachOutput = std::move(attachOutput)](const DriverLaunch& recipe, int livenessFd,
                                                           ChildProcess::OnExit onExit) {
        const UniqueFd output = attachOutput ? attachOutput() : UniqueFd();
        const Stdio outputs = output ? Stdio::fd(output.get()) : Stdio::null();
        return Spawner::spawn({.executable = recipe.executable,
                               .arguments = recipe.arguments,
                               .environment = recipe.environment,
                               .standardInput = Stdio::fd(livenessFd),
                               .standardOutput = outputs,
                               .standardError = outputs},
                              std::move(onExit));
    };
    deps.socketReady = DriverSocketDirectory::acceptsConnections;
    deps.sleep = [](Seconds time) { std::this_thread::sleep_for(time); };
    deps.now = steadyNow;
    deps.makeQueue = SerialQueue::withThread;
    return deps;
}

}  // namespace tarnik
