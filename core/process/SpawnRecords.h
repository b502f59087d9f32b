#pragma once

#include <spawn.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// The two records that posix_spawn(3) takes, freed when this goes: which descriptors the child gets, and that
// every signal starts at its default with none blocked. The first failing step is kept until seal() tells it.
class SpawnRecords {
public:
    SpawnRecords();
    ~SpawnRecords();
    SpawnRecords(const SpawnRecords&) = delete;
    SpawnRecords& operator=(const SpawnRecords&) = delete;

    // Connects the child's `standard` descriptor. `openFlags` are for /dev/null. A descriptor to duplicate
    // lies above 2, or an earlier action might have replaced it.
    void connect(int standard, const Stdio& stdio, int openFlags);

    // The child keeps `fd` as it is.
    void keep(int fd);

    // Closes everything else; after all other actions. 0, or the errno value of the first step that failed.
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
