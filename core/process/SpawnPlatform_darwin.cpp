#include "core/process/SpawnPlatform.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>
#include <util.h>

namespace tarnik {

// With this flag the child keeps only descriptors that an action names (posix_spawnattr_setflags(3)).
int closeAllOthers(posix_spawn_file_actions_t& /*actions*/, short& flags) {
    flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
    return 0;
}

// Darwin lacks pipe2(2). A child that another thread starts before fcntl(2) inherits neither end, because
// Spawner and PtyProcess close every descriptor that isn't named.
int openPipe(int (&ends)[2]) {
    if (::pipe(ends) != 0) return errno;
    int failed = 0;
    for (const int end : ends) {
        if (::fcntl(end, F_SETFD, FD_CLOEXEC) != 0) failed = errno;
    }
    if (failed == 0) return 0;
    for (const int end : ends) ::close(end);
    return failed;
}

pid_t forkOnTerminal(int& master, winsize& size) {
    return ::forkpty(&master, nullptr, nullptr, &size);
}

}  // namespace tarnik
