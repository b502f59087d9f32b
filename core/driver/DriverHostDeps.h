#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/driver/DriverLaunch.h"
#include "core/foundation/SerialQueue.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/ChildProcess.h"

namespace tarnik {

// Everything DriverHost asks of the outside.
struct DriverHostDeps {
    using LaunchResult = std::expected<std::shared_ptr<ChildProcess>, SystemError>;

    // `livenessFd` becomes the driver's standard input; it is borrowed for the call.
    using Launch =
        std::function<LaunchResult(const DriverLaunch&, int livenessFd, ChildProcess::OnExit onExit)>;

    // A descriptor for one driver's standard output and error; none sends them to /dev/null.
    using AttachOutput = std::function<UniqueFd()>;

    Launch launch;
    std::function<bool(const std::string& socketPath)> socketReady;  // must not block
    std::function<void(Seconds)> sleep;                              // blocks the calling thread
    std::function<TimePoint()> now;
    Seconds readinessTimeout = Seconds(10);
    std::vector<Seconds> restartDelays{Seconds(1), Seconds(2), Seconds(4), Seconds(8), Seconds(10)};
    // Returns true while a newer setEnabled() or the end waits: a start gives up, and the waiting call
    // decides.
    std::function<bool()> isSuperseded = [] { return false; };
    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    // Real children, the steady clock, a queue with a thread.
    static DriverHostDeps production(AttachOutput attachOutput = {});
};

}  // namespace tarnik
