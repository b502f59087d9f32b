#include "core/node/NodeSupervisor.h"
#include "core/process/Spawner.h"

namespace tarnik {

NodeSupervisorDeps NodeSupervisorDeps::production() {
    NodeSupervisorDeps deps;
    deps.spawn = Spawner::spawn;
    deps.spawnPty = PtyProcess::spawn;
    deps.now = steadyNow;
    deps.makeQueue = SerialQueue::withThread;
    return deps;
}

}  // namespace tarnik
