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
// process. Its signals are reset and not blocked. PATH is never searched.
struct Spawner {
    struct Pipe {
        UniqueFd readEnd;
        UniqueFd writeEnd;
    };

    struct Output {
        ExitStatus status;
        std::string text;  // standard output and error, in UTF-8, invalid bytes replaced
    };

    // A command for run().
    struct Command {
        std::string executable;
        std::vector<std::string> arguments;
        Environment environment;  // empty: only PATH, as defaultPath
        Seconds timeout;
        std::size_t limit;                                // the output's last `limit` bytes are kept
        StopSequence stop = StopSequences::shortCommand;  // run at the time-out
        Seconds outputGrace = Seconds(5);                 // wait for the output's end; then our end is closed
    };

    static constexpr const char* defaultPath = "/usr/bin:/bin:/usr/sbin:/sbin";

    // Calls `onExit` once, on the child's reaper thread, after the status is stored; it may call the child's
    // operations. The request's descriptors are borrowed for the call.
    static std::expected<std::shared_ptr<ChildProcess>, SystemError> spawn(const SpawnRequest& request,
                                                                           ChildProcess::OnExit onExit = {});

    // Opens a pipe with both ends close-on-exec.
    static std::expected<Pipe, SystemError> pipe();

    // Runs the command and waits for its end. By default it blocks up to `timeout` + 12 s: it sends SIGTERM
    // at the time-out, SIGKILL 2 s later, then waits 5 s for the exit and 5 s for the output's end. A failed
    // command is not an error. A child that survives SIGKILL is reported as ended by signal 9.
    static std::expected<Output, SystemError> run(const Command& command);
};

}  // namespace tarnik
