#include "core/process/SpawnAttributes.h"

#include <csignal>

#include "core/process/SpawnPlatform.h"

namespace tarnik {

SpawnAttributes::SpawnAttributes() {
    note(::posix_spawn_file_actions_init(&actions_));
    note(::posix_spawnattr_init(&attributes_));
}

SpawnAttributes::~SpawnAttributes() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
}

void SpawnAttributes::connect(int standard, const Stdio& stdio, int openFlags) {
    if (const auto fd = stdio.descriptor()) {
        note(::posix_spawn_file_actions_adddup2(&actions_, *fd, standard));
    } else {
        note(::posix_spawn_file_actions_addopen(&actions_, standard, "/dev/null", openFlags, 0));
    }
}

void SpawnAttributes::keep(int fd) {
    note(::posix_spawn_file_actions_adddup2(&actions_, fd, fd));
}

int SpawnAttributes::seal(short extraFlags) {
    auto flags = static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | extraFlags);
    note(closeAllOthers(actions_, flags));
    sigset_t all;
    sigset_t none;
    sigfillset(&all);  // a macro on Darwin
    sigemptyset(&none);
    note(::posix_spawnattr_setsigdefault(&attributes_, &all));
    note(::posix_spawnattr_setsigmask(&attributes_, &none));
    note(::posix_spawnattr_setflags(&attributes_, flags));
    return firstError_;
}

void SpawnAttributes::note(int error) {
    if (firstError_ == 0) firstError_ = error;
}

}  // namespace tarnik
