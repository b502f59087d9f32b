#pragma once

#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <vector>

#include "core/foundation/SystemError.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/ChildProcess.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// Starts child programs. Call from any thread.
//
// A child gets the environment and the three descriptors of the request, and the working directory of this
// process. The child's signals are reset and unblocked. PATH is never searched.
struct Spawner {
    struct Pipe {
        UniqueFd readEnd;
        UniqueFd writeEnd;
    };

    struct Output {
        ExitStatus status;
        std::string text;  // standard output and error in UTF-8, with invalid bytes replaced
    };

    // A command for run().
    struct Command {
        std::string executable;
        std::vector<std::string> arguments;
        Environment environment;  // if empty, the child gets only PATH=defaultPath
        Seconds timeout;
        std::size_t limit;                                // the output's last `limit` bytes are kept
        StopSequence stop = StopSequences::shortCommand;  // run at the time-out
        Seconds outputGrace = Seconds(5);                 // longest wait for the output's end after the exit
    };

    static constexpr const char* defaultPath = "/usr/bin:/bin:/usr/sbin:/sbin";

    // Calls `onExit` once, on the child's reaper thread, after the status is stored. `onExit` may call the
    // child's operations. The caller keeps the request's descriptors.
    static std::expected<std::shared_ptr<ChildProcess>, SystemError> spawn(const SpawnRequest& request,
                                                                           ChildProcess::OnExit onExit = {});

    // Opens a pipe with both ends close-on-exec.
    static std::expected<Pipe, SystemError> pipe();

    // Runs the command and waits for its end. By default this blocks for up to `timeout` + 12 s. It sends
    // SIGTERM at the time-out and SIGKILL 2 s later, and waits up to 5 s for the exit. It then waits up to
    // 5 s for the output's end. A command that exits with a failure is not an error. A child that survives
    // SIGKILL is reported as ended by signal 9.
    static std::expected<Output, SystemError> run(const Command& command);
};

}  // namespace tarnik
