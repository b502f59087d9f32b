#pragma once

#include <string>

namespace tarnik {

// A system call that failed on the way to a running child.
struct SpawnError {
    std::string call;  // the call with its subject: "pipe", "posix_spawn /usr/bin/tar"
    int code = 0;      // an errno value

    bool operator==(const SpawnError&) const = default;
};

// "posix_spawn /usr/bin/tar failed: No such file or directory"
std::string describe(const SpawnError& error);

}  // namespace tarnik
