#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "core/foundation/UniqueFd.h"
#include "core/process/ProcessEntry.h"
#include "core/process/ProcessStat.h"

namespace tarnik {

// Linux's /proc, opened once to ask about any number of processes. Allocates nothing but the answers.
//
// For one thread: all questions share the buffers.
class ProcFolder {
public:
    enum class Missing {
        process,  // it has ended, or is hidden from us
        answer,   // it may be there, but could not be read
    };
    static constexpr std::size_t longestPath = 4096;

    ProcFolder();

    // All processes that we may see. None when one of them may be there and can't be read.
    std::optional<std::vector<ProcessEntry>> entries();
    std::expected<ProcessEntry, Missing> entry(pid_t pid);
    std::expected<ProcessStat, Missing> stat(pid_t pid);
    // Started by any of the process's threads. None when one of them has gone, and where the system keeps no
    // such lists.
    std::optional<std::vector<pid_t>> children(pid_t parent);

    // The path of the program, without the mark of one whose file has gone.
    std::optional<std::string> program(pid_t pid);

    std::uint64_t ticksPerSecond() const { return ticksPerSecond_; }

private:
    // "PID/file", good until the next call.
    const char* nameOf(pid_t pid, std::string_view file);
    bool leadsTo(const char* link, const std::string& path) const;

    UniqueFd folder_;
    std::uint64_t ticksPerSecond_;
    std::array<char, 32> name_{};
    std::array<char, longestPath> text_{};
};

}  // namespace tarnik
