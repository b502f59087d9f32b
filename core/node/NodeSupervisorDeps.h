#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <string>

#include "core/foundation/SerialQueue.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/Time.h"
#include "core/node/NodeLog.h"
#include "core/pairing/PairingSession.h"
#include "core/process/ChildProcess.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// Everything NodeSupervisor asks of the outside.
struct NodeSupervisorDeps {
    using Spawn = std::function<std::expected<std::shared_ptr<ChildProcess>, SystemError>(
        const SpawnRequest&, ChildProcess::OnExit)>;

    Spawn spawn;                        // the node in its normal mode
    PairingSession::SpawnPty spawnPty;  // the connect command, on a terminal
    std::function<TimePoint()> now;
    Seconds pairingGrace = Seconds(90);    // a pairing run is left alone this long after the person's yes
    Seconds connectedAfter = Seconds(15);  // a connect command that runs on this long after it has connected
    Seconds outputGrace = Seconds(5);      // for what still holds the node's output after its end
    std::shared_ptr<NodeLog> nodeLog;      // none: the node's output goes to /dev/null
    // Returns true once the program ends: nothing is started any more, not even by a call that is under way.
    std::function<bool()> isEnding = [] { return false; };
    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    // Real children, the steady clock, a queue with a thread; no log.
    static NodeSupervisorDeps production();
};

}  // namespace tarnik
