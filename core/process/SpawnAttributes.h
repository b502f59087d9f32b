#pragma once

#include <spawn.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// Owns the two records that posix_spawn(3) takes. The actions set the child's descriptors, and the attributes
// reset and unblock the child's signals. seal() returns the first error of all operations.
class SpawnAttributes {
public:
    SpawnAttributes();
    ~SpawnAttributes();
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    // Connects the child's descriptor `standard` to `stdio`. `openFlags` are for /dev/null. The descriptor of
    // `stdio` must be above 2, because an earlier action may have replaced a lower one.
    void connect(int standard, const Stdio& stdio, int openFlags);

    // Lets the child keep the standard descriptor `fd`, which must not be close-on-exec.
    void keep(int fd);

    // Adds the closing of all other descriptors and the reset of the signals. Call this last. Returns 0 or
    // the errno value of the first error.
    [[nodiscard]] int seal(short extraFlags = 0);

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    void note(int error);

    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
    int firstError_ = 0;
};

}  // namespace tarnik
