#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnik {

// A whole process environment, by name.
using Environment = std::map<std::string, std::string>;

// What one of a child's standard descriptors is connected to.
class Stdio {
public:
    // /dev/null, opened for reading (standard input) or writing (the other two).
    static constexpr Stdio null() { return Stdio{}; }

    // The parent's descriptor `fd`, which stays the parent's to close.
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

// One child to start, described whole: nothing is inherited that isn't named here.
struct SpawnRequest {
    std::string executable;                   // absolute path; also argument 0
    std::vector<std::string> arguments = {};  // those after argument 0
    Environment environment = {};
    Stdio standardInput = Stdio::null();
    Stdio standardOutput = Stdio::null();
    Stdio standardError = Stdio::null();

    bool operator==(const SpawnRequest&) const = default;
};

}  // namespace tarnik
