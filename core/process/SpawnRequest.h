#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/process/Environment.h"

namespace tarnik {

// A connection for one of a child's standard descriptors.
class Stdio {
public:
    // /dev/null, opened for reading (standard input) or writing (standard output and error).
    static constexpr Stdio null() { return Stdio{}; }

    // The descriptor `fd`, which the parent still owns and closes.
    static constexpr Stdio fd(int fd) {
        Stdio stdio;
        stdio.fd_ = fd;
        return stdio;
    }

    constexpr std::optional<int> descriptor() const { return fd_; }

    bool operator==(const Stdio&) const = default;

private:
    std::optional<int> fd_;
};

// A complete description of a child to start. The child inherits no variable and no descriptor that isn't
// named here.
struct SpawnRequest {
    std::string executable;                   // absolute path; also argument 0
    std::vector<std::string> arguments = {};  // from argument 1 on
    Environment environment = {};
    Stdio standardInput = Stdio::null();
    Stdio standardOutput = Stdio::null();
    Stdio standardError = Stdio::null();

    bool operator==(const SpawnRequest&) const = default;
};

}  // namespace tarnik
