#include "core/process/SpawnPlatform.h"

#include <cerrno>

#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

namespace tarnik {

// The child makes a single call of close_range(2), even if the parent has many descriptors open.
int closeAllOthers(posix_spawn_file_actions_t& actions, short& /*flags*/) {
    return ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

int openPipe(int (&ends)[2]) {
    return ::pipe2(ends, O_CLOEXEC) == 0 ? 0 : errno;
}

pid_t forkOnTerminal(int& master, winsize& size) {
    return ::forkpty(&master, nullptr, nullptr, &size);
}

}  // namespace tarnik
