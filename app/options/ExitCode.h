#pragma once

namespace tarnik {

// The exit statuses of the program and of its commands. They are documented in the help and in the man page.
enum class ExitCode {
    done = 0,
    failed = 1,
    wrongUse = 2,
    notRunning = 3,    // the command needs a running tarnik
    notConnected = 4,  // tarnik isn't connected to an account, or can't reach the service
    homeInUse = 5,     // another program uses the node home
};

constexpr int exitStatus(ExitCode code) {
    return static_cast<int>(code);
}

}  // namespace tarnik
