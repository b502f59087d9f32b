#include "core/node/NodeSupervisorDeps.h"

#include "core/process/PtyProcess.h"
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
