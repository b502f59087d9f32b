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
// A child gets exactly its request: that environment, those three descriptors and no other, every signal at
// its default and none blocked; the working directory is the parent's. PATH is never searched.
struct Spawner {
    struct Pipe {
        UniqueFd readEnd;
        UniqueFd writeEnd;
    };

    struct Output {
        ExitStatus status;
        std::string text;  // both outputs, UTF-8, invalid bytes replaced
    };

    // A short command to run to its end.
    struct Command {
        std::string executable;
        std::vector<std::string> arguments;
        Environment environment;  // empty: only PATH, as defaultPath
        Seconds timeout;
        std::size_t limit;                                // bytes of output kept, the last ones
        StopSequence stop = StopSequences::shortCommand;  // run at the time-out
        Seconds outputGrace = Seconds(5);  // for the rest of the output; then our end is closed
    };

    static constexpr const char* defaultPath = "/usr/bin:/bin:/usr/sbin:/sbin";

    // `onExit` is called once, on the child's reaper thread, after the status is set; it may call back into
    // the child. The request's descriptors are borrowed for the call.
    static std::expected<std::shared_ptr<ChildProcess>, SystemError> spawn(const SpawnRequest& request,
                                                                           ChildProcess::OnExit onExit = {});

    // Both ends are close-on-exec.
    static std::expected<Pipe, SystemError> pipe();

    // Blocks up to `timeout` + 12 s: SIGTERM at the time-out, SIGKILL 2 s later, then 5 s for the end and 5 s
    // for the rest of the output. A bad exit is no error; a child that survives it all reads as signal 9.
    static std::expected<Output, SystemError> run(const Command& command);
};

}  // namespace tarnik
